<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>Commands</name>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <source>&amp;Export Picture…</source>
        <translation>Bild &amp;exportieren …</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederherstellen</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Alles auswählen</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Zoom &amp;In</source>
        <translation>Ver&amp;größern</translation>
    </message>
    <message>
        <source>Zoom &amp;Out</source>
        <translation>Ver&amp;kleinern</translation>
    </message>
    <message>
        <source>&amp;Fit Drawing</source>
        <translation>Zeichnung ein&amp;passen</translation>
    </message>
    <message>
        <source>&amp;Snap to Grid</source>
        <translation>Am &amp;Raster ausrichten</translation>
    </message>
    <message>
        <source>Show &amp;Grid</source>
        <translation>Raster an&amp;zeigen</translation>
    </message>
    <message>
        <source>Show &amp;Tips</source>
        <translation>&amp;Tipps anzeigen</translation>
    </message>
    <message>
        <source>&amp;Simple Tips</source>
        <translation>&amp;Einfache Tipps</translation>
    </message>
    <message>
        <source>Only While &amp;Ctrl Is Held</source>
        <translation>Nur bei gedrückter &amp;Strg-Taste</translation>
    </message>
    <message>
        <source>&amp;Motion in Tips</source>
        <translation>&amp;Bewegung in Tipps</translation>
    </message>
    <message>
        <source>&amp;Pinned Tips in Own Window</source>
        <translation>&amp;Offene Tipps im eigenen Fenster</translation>
    </message>
    <message>
        <source>Tip for Commands &amp;Without One</source>
        <translation>Ersatztipp für Befehle &amp;ohne Tipp</translation>
    </message>
    <message>
        <source>&amp;All Tips…</source>
        <translation>&amp;Alle Tipps …</translation>
    </message>
    <message>
        <source>&amp;Help for This Command</source>
        <translation>&amp;Hilfe zu diesem Befehl</translation>
    </message>
    <message>
        <source>&amp;Select</source>
        <translation>Aus&amp;wählen</translation>
    </message>
    <message>
        <source>&amp;Line</source>
        <translation>&amp;Linie</translation>
    </message>
    <message>
        <source>&amp;Rectangle</source>
        <translation>&amp;Rechteck</translation>
    </message>
    <message>
        <source>&amp;Circle</source>
        <translation>&amp;Kreis</translation>
    </message>
    <message>
        <source>&amp;Arc</source>
        <translation>Kreis&amp;bogen</translation>
    </message>
    <message>
        <source>&amp;Polyline</source>
        <translation>&amp;Polylinie</translation>
    </message>
    <message>
        <source>&amp;Move</source>
        <translation>&amp;Verschieben</translation>
    </message>
    <message>
        <source>Ro&amp;tate</source>
        <translation>&amp;Drehen</translation>
    </message>
    <message>
        <source>M&amp;irror</source>
        <translation>&amp;Spiegeln</translation>
    </message>
</context>
<context>
    <name>DrawTool</name>
    <message>
        <source>Line: pick the start point</source>
        <translation>Linie: Anfangspunkt wählen</translation>
    </message>
    <message>
        <source>Line: pick the end point</source>
        <translation>Linie: Endpunkt wählen</translation>
    </message>
    <message>
        <source>Rectangle: pick a corner</source>
        <translation>Rechteck: Ecke wählen</translation>
    </message>
    <message>
        <source>Rectangle: pick the opposite corner</source>
        <translation>Rechteck: gegenüberliegende Ecke wählen</translation>
    </message>
    <message>
        <source>Circle: pick the centre</source>
        <translation>Kreis: Mittelpunkt wählen</translation>
    </message>
    <message>
        <source>Circle: pick a point on the circle</source>
        <translation>Kreis: Punkt der Kreislinie wählen</translation>
    </message>
    <message>
        <source>Arc: pick the start point</source>
        <translation>Kreisbogen: Anfangspunkt wählen</translation>
    </message>
    <message>
        <source>Arc: pick a point on the arc</source>
        <translation>Kreisbogen: Punkt des Bogens wählen</translation>
    </message>
    <message>
        <source>Arc: pick the end point</source>
        <translation>Kreisbogen: Endpunkt wählen</translation>
    </message>
    <message>
        <source>Polyline: pick the start point</source>
        <translation>Polylinie: Anfangspunkt wählen</translation>
    </message>
    <message>
        <source>Polyline: pick the next point, Enter or double click ends it</source>
        <translation>Polylinie: nächsten Punkt wählen, Eingabetaste oder Doppelklick beendet</translation>
    </message>
</context>
<context>
    <name>HelpWindow</name>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message numerus="yes">
        <source>%n tip(s) are ready</source>
        <translation>
            <numerusform>%n Tipp ist bereit</numerusform>
            <numerusform>%n Tipps sind bereit</numerusform>
        </translation>
    </message>
    <message>
        <source>Export Picture</source>
        <translation>Bild exportieren</translation>
    </message>
    <message>
        <source>Pictures (*.png)</source>
        <translation>Bilder (*.png)</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>%1 gespeichert</translation>
    </message>
    <message>
        <source>%1 could not be written</source>
        <translation>%1 konnte nicht geschrieben werden</translation>
    </message>
    <message>
        <source>Drafting</source>
        <translation>Zeichnen</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Draw</source>
        <translation>&amp;Zeichnen</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Tips</source>
        <translation>&amp;Tipps</translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation>&amp;Sprache</translation>
    </message>
    <message>
        <source>&amp;Appearance</source>
        <translation>&amp;Erscheinungsbild</translation>
    </message>
    <message>
        <source>&amp;Light</source>
        <translation>&amp;Hell</translation>
    </message>
    <message>
        <source>&amp;Dark</source>
        <translation>&amp;Dunkel</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>Meldungen</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Eigenschaften</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Drawing</source>
        <translation>Zeichnen</translation>
    </message>
</context>
<context>
    <name>Options</name>
    <message>
        <source>--%1 must be one of: %2
</source>
        <translation>--%1 muss eines davon sein: %2
</translation>
    </message>
    <message>
        <source>A small drafting application whose commands explain themselves.</source>
        <translation>Eine kleine Zeichenanwendung, deren Befehle sich selbst erklären.</translation>
    </message>
    <message>
        <source>Language of the application and its tips: en or de.</source>
        <translation>Sprache der Anwendung und ihrer Tipps: en oder de.</translation>
    </message>
    <message>
        <source>Appearance: light or dark.</source>
        <translation>Erscheinungsbild: light oder dark.</translation>
    </message>
    <message>
        <source>Folder with tip packages; may be given several times.</source>
        <translation>Ordner mit Tipp-Paketen; mehrfach möglich.</translation>
    </message>
    <message>
        <source>Lay everything out from right to left.</source>
        <translation>Alles von rechts nach links anordnen.</translation>
    </message>
    <message>
        <source>Pinned tips live in a window of this application.</source>
        <translation>Offen gehaltene Tipps liegen in einem Fenster dieser Anwendung.</translation>
    </message>
    <message>
        <source>Start with simple tips.</source>
        <translation>Mit einfachen Tipps beginnen.</translation>
    </message>
    <message>
        <source>Start without tips.</source>
        <translation>Ohne Tipps beginnen.</translation>
    </message>
    <message>
        <source>Tips appear only while Ctrl is held.</source>
        <translation>Tipps erscheinen nur bei gedrückter Strg-Taste.</translation>
    </message>
    <message>
        <source>Nothing moves in tips unless asked to.</source>
        <translation>In Tipps bewegt sich nichts unaufgefordert.</translation>
    </message>
    <message>
        <source>No tip for commands that have none.</source>
        <translation>Kein Ersatztipp für Befehle ohne Tipp.</translation>
    </message>
    <message>
        <source>Fill the screen.</source>
        <translation>Den Bildschirm füllen.</translation>
    </message>
    <message>
        <source>Start with an empty drawing.</source>
        <translation>Mit einer leeren Zeichnung beginnen.</translation>
    </message>
    <message>
        <source>Show every message of the tip library in the message panel.</source>
        <translation>Alle Meldungen der Tipp-Bibliothek im Meldungsfeld zeigen.</translation>
    </message>
    <message>
        <source>Time until an unattended tip hides; 0: never.</source>
        <translation>Zeit, nach der ein unbeachteter Tipp verschwindet; 0: nie.</translation>
    </message>
</context>
<context>
    <name>PropertyPanel</name>
    <message>
        <source>Nothing selected</source>
        <translation>Nichts ausgewählt</translation>
    </message>
    <message numerus="yes">
        <source>%n shape(s)</source>
        <translation>
            <numerusform>%n Form</numerusform>
            <numerusform>%n Formen</numerusform>
        </translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Linie</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Rechteck</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>Kreis</translation>
    </message>
    <message>
        <source>Arc</source>
        <translation>Kreisbogen</translation>
    </message>
    <message>
        <source>Polyline</source>
        <translation>Polylinie</translation>
    </message>
    <message>
        <source>Shape</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
    <message>
        <source>%1 mm</source>
        <translation>%1 mm</translation>
    </message>
</context>
<context>
    <name>SelectTool</name>
    <message>
        <source>Select: click a shape, or drag a frame around several</source>
        <translation>Auswählen: auf eine Form klicken oder einen Rahmen um mehrere ziehen</translation>
    </message>
</context>
<context>
    <name>TipHost</name>
    <message>
        <source>A tip wants to open this outside %1:</source>
        <translation>Ein Tipp möchte dies außerhalb von %1 öffnen:</translation>
    </message>
    <message>
        <source>Open outside?</source>
        <translation>Außerhalb öffnen?</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>TipList</name>
    <message>
        <source>All Tips</source>
        <translation>Alle Tipps</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
</context>
<context>
    <name>TransformTool</name>
    <message>
        <source>moving</source>
        <translation>Verschieben</translation>
    </message>
    <message>
        <source>rotating</source>
        <translation>Drehen</translation>
    </message>
    <message>
        <source>mirroring</source>
        <translation>Spiegeln</translation>
    </message>
    <message>
        <source>Move: pick a base point</source>
        <translation>Verschieben: Bezugspunkt wählen</translation>
    </message>
    <message>
        <source>Move: pick where it goes</source>
        <translation>Verschieben: Ziel wählen</translation>
    </message>
    <message>
        <source>Rotate: pick the centre</source>
        <translation>Drehen: Mittelpunkt wählen</translation>
    </message>
    <message>
        <source>Rotate: pick where the turn starts</source>
        <translation>Drehen: Anfangsrichtung wählen</translation>
    </message>
    <message>
        <source>Rotate: pick where the turn ends</source>
        <translation>Drehen: Endrichtung wählen</translation>
    </message>
    <message>
        <source>Mirror: pick a point on the axis</source>
        <translation>Spiegeln: Punkt der Achse wählen</translation>
    </message>
    <message>
        <source>Mirror: pick a second point on the axis</source>
        <translation>Spiegeln: zweiten Punkt der Achse wählen</translation>
    </message>
</context>
<context>
    <name>UndoCommands</name>
    <message>
        <source>drawing</source>
        <translation>Zeichnen</translation>
    </message>
    <message>
        <source>deletion</source>
        <translation>Löschen</translation>
    </message>
</context>
</TS>
