<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>DisplayColorDialog</name>
    <message>
        <source>Display colors</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Elements of the display</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Trace</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Background</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Grid</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Labels and time ruler</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Average beat</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reference beat</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saturated trace</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Beat ticks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sweep cursor</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fiducial marks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Selected beat</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Element %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QBeatDisplay</name>
    <message>
        <source>PR
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>P %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>QRS
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ST %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>QT %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>T %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tpf
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%.2f mV</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>P on</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>P off</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>P peak</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>QRS on</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>QRS off</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>T on</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>T off</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>T peak</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[RR %1]</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QSignalBrowseDisplay</name>
    <message>
        <source>Time in the recording</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>StressMonitorWindow</name>
    <message>
        <source>Basal</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Control</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rest</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Exercise</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recovery</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
