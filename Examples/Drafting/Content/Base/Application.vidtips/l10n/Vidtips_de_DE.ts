<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
    <name>Application</name>
    <message>
        <source>New drawing</source>
        <translation>Neue Zeichnung</translation>
    </message>
    <message>
        <source>Clears the drawing and starts over with an empty sheet.</source>
        <translation>Leert die Zeichnung und beginnt mit einem leeren Blatt.</translation>
    </message>
    <message>
        <source>The history goes with it: this cannot be undone.</source>
        <translation>Der Verlauf geht mit verloren: Das lässt sich nicht rückgängig machen.</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Takes back the last change to the drawing.</source>
        <translation>Nimmt die letzte Änderung an der Zeichnung zurück.</translation>
    </message>
    <message>
        <source>There is no change to take back.</source>
        <translation>Es gibt keine Änderung, die sich zurücknehmen ließe.</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederherstellen</translation>
    </message>
    <message>
        <source>Does again what was just taken back.</source>
        <translation>Führt erneut aus, was gerade zurückgenommen wurde.</translation>
    </message>
    <message>
        <source>Nothing was taken back.</source>
        <translation>Es wurde nichts zurückgenommen.</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Shows a smaller part of the drawing, larger.</source>
        <translation>Zeigt einen kleineren Teil der Zeichnung größer.</translation>
    </message>
    <message>
        <source>The mouse wheel zooms about the place under the pointer.</source>
        <translation>Das Mausrad zoomt um die Stelle unter dem Mauszeiger.</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Shows a larger part of the drawing, smaller.</source>
        <translation>Zeigt einen größeren Teil der Zeichnung kleiner.</translation>
    </message>
    <message>
        <source>Fit drawing</source>
        <translation>Zeichnung einpassen</translation>
    </message>
    <message>
        <source>Chooses the scale at which every shape is in sight.</source>
        <translation>Wählt den Maßstab, bei dem alle Formen zu sehen sind.</translation>
    </message>
    <message>
        <source>Snap to grid</source>
        <translation>Am Raster ausrichten</translation>
    </message>
    <message>
        <source>Every point you pick lands on the nearest point of the %(grid)s grid.</source>
        <translation>Jeder gewählte Punkt springt auf den nächstgelegenen Punkt des %(grid)s-Rasters.</translation>
    </message>
    <message>
        <source>Left: picked freehand, with snapping off.</source>
        <translation>Links: aus freier Hand gewählt, ohne Ausrichtung.</translation>
    </message>
    <message>
        <source>Right: the same picks with snapping on.</source>
        <translation>Rechts: dieselben Punkte, am Raster ausgerichtet.</translation>
    </message>
    <message>
        <source>Show grid</source>
        <translation>Raster anzeigen</translation>
    </message>
    <message>
        <source>Shows or hides the lines of the grid. Snapping works either way.</source>
        <translation>Zeigt oder verbirgt die Rasterlinien. Die Ausrichtung wirkt in beiden Fällen.</translation>
    </message>
    <message>
        <source>All tips</source>
        <translation>Alle Tipps</translation>
    </message>
    <message>
        <source>Lists every tip there is, with the key it is found by.</source>
        <translation>Listet alle vorhandenen Tipps mit ihren Schlüsseln auf.</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Eigenschaften</translation>
    </message>
    <message>
        <source>Kind, position, size and length of what is selected.</source>
        <translation>Art, Position, Größe und Länge der Auswahl.</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>Meldungen</translation>
    </message>
    <message>
        <source>What %(application)s and its tips had to report, newest last.</source>
        <translation>Was %(application)s und seine Tipps zu melden hatten, das Neueste zuletzt.</translation>
    </message>
</context>
</TS>
