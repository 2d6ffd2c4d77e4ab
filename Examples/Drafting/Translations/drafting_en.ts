<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name>MainWindow</name>
    <message numerus="yes">
        <source>%n tip(s) are ready</source>
        <translation>
            <numerusform>%n tip is ready</numerusform>
            <numerusform>%n tips are ready</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>PropertyPanel</name>
    <message numerus="yes">
        <source>%n shape(s)</source>
        <translation>
            <numerusform>%n shape</numerusform>
            <numerusform>%n shapes</numerusform>
        </translation>
    </message>
</context>
</TS>
