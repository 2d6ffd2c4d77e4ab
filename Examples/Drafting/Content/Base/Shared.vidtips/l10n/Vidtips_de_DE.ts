<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
    <name>VidtipsUI</name>
    <message>
        <source>More help</source>
        <translation>Mehr Hilfe</translation>
    </message>
    <message>
        <source>Keep open</source>
        <translation>Offen halten</translation>
    </message>
    <message>
        <source>Show more</source>
        <translation>Mehr zeigen</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
</context>
<context>
    <name>Shared</name>
    <message>
        <source>No tip yet</source>
        <translation>Noch kein Tipp</translation>
    </message>
    <message>
        <source>Nobody has written a tip for this command so far. Its name in the menu says what it does.</source>
        <translation>Zu diesem Befehl gibt es bisher keinen Tipp. Sein Name im Menü sagt, was er tut.</translation>
    </message>
    <message>
        <source>About tips</source>
        <translation>Über Tipps</translation>
    </message>
    <message>
        <source>Rest the pointer on a command to see what it does.</source>
        <translation>Lassen Sie den Mauszeiger auf einem Befehl ruhen, um zu sehen, was er tut.</translation>
    </message>
    <message>
        <source>Wait a moment or click the tip, and it grows to show the command at work.</source>
        <translation>Warten Sie einen Augenblick oder klicken Sie auf den Tipp: Er wächst und zeigt den Befehl bei der Arbeit.</translation>
    </message>
    <message>
        <source>Keep it open to follow its steps while you work in %(application)s.</source>
        <translation>Halten Sie ihn offen, um den Schritten während der Arbeit in %(application)s zu folgen.</translation>
    </message>
    <message>
        <source>Press F1 for more help, Escape to close it.</source>
        <translation>F1 öffnet mehr Hilfe, Esc schließt den Tipp.</translation>
    </message>
</context>
</TS>
