<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name>MainWindow</name>
    <message numerus="yes">
        <source>%n colourway(s)</source>
        <translation>
            <numerusform>%n colourway</numerusform>
            <numerusform>%n colourways</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n new</source>
        <translation>
            <numerusform>%n new</numerusform>
            <numerusform>%n new</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>NoticePresenter</name>
    <message numerus="yes">
        <source>Downloading %Ln files</source>
        <translation>
            <numerusform>Downloading %Ln file</numerusform>
            <numerusform>Downloading %Ln files</numerusform>
        </translation>
    </message>
</context>
</TS>
