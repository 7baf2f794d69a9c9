<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>DisplayColorDialog</name>
    <message>
        <source>Display colors</source>
        <translation>Colores de la pantalla</translation>
    </message>
    <message>
        <source>Elements of the display</source>
        <translation>Elementos de la pantalla</translation>
    </message>
    <message>
        <source>Trace</source>
        <translation>Trazado</translation>
    </message>
    <message>
        <source>Background</source>
        <translation>Fondo</translation>
    </message>
    <message>
        <source>Grid</source>
        <translation>Cuadrícula</translation>
    </message>
    <message>
        <source>Labels and time ruler</source>
        <translation>Rótulos y regla de tiempo</translation>
    </message>
    <message>
        <source>Average beat</source>
        <translation>Latido promedio</translation>
    </message>
    <message>
        <source>Reference beat</source>
        <translation>Latido de referencia</translation>
    </message>
    <message>
        <source>Saturated trace</source>
        <translation>Trazado saturado</translation>
    </message>
    <message>
        <source>Beat ticks</source>
        <translation>Marcas de latidos</translation>
    </message>
    <message>
        <source>Sweep cursor</source>
        <translation>Cursor de barrido</translation>
    </message>
    <message>
        <source>Fiducial marks</source>
        <translation>Puntos fiduciales</translation>
    </message>
    <message>
        <source>Selected beat</source>
        <translation>Latido seleccionado</translation>
    </message>
    <message>
        <source>Element %1</source>
        <translation>Elemento %1</translation>
    </message>
</context>
<context>
    <name>QBeatDisplay</name>
    <message>
        <source>PR
%1</source>
        <translation>PR
%1</translation>
    </message>
    <message>
        <source>P %1</source>
        <translation>P %1</translation>
    </message>
    <message>
        <source>QRS
%1</source>
        <translation>QRS
%1</translation>
    </message>
    <message>
        <source>ST %1</source>
        <translation>ST %1</translation>
    </message>
    <message>
        <source>QT %1</source>
        <translation>QT %1</translation>
    </message>
    <message>
        <source>T %1</source>
        <translation>T %1</translation>
    </message>
    <message>
        <source>Tpf
%1</source>
        <translation>Tpf
%1</translation>
    </message>
    <message>
        <source>%.2f mV</source>
        <translation>%.2f mV</translation>
    </message>
    <message>
        <source>P on</source>
        <translation>Inicio P</translation>
    </message>
    <message>
        <source>P off</source>
        <translation>Fin P</translation>
    </message>
    <message>
        <source>P peak</source>
        <translation>Pico P</translation>
    </message>
    <message>
        <source>QRS on</source>
        <translation>Inicio QRS</translation>
    </message>
    <message>
        <source>QRS off</source>
        <translation>Fin QRS</translation>
    </message>
    <message>
        <source>T on</source>
        <translation>Inicio T</translation>
    </message>
    <message>
        <source>T off</source>
        <translation>Fin T</translation>
    </message>
    <message>
        <source>T peak</source>
        <translation>Pico T</translation>
    </message>
    <message>
        <source>[RR %1]</source>
        <translation>[RR %1]</translation>
    </message>
</context>
<context>
    <name>QSignalBrowseDisplay</name>
    <message>
        <source>Time in the recording</source>
        <translation>Tiempo en el registro</translation>
    </message>
</context>
<context>
    <name>StressMonitorWindow</name>
    <message>
        <source>Basal</source>
        <translation>Basal</translation>
    </message>
    <message>
        <source>Control</source>
        <translation>Control</translation>
    </message>
    <message>
        <source>Rest</source>
        <translation>Reposo</translation>
    </message>
    <message>
        <source>Exercise</source>
        <translation>Ejercicio</translation>
    </message>
    <message>
        <source>Recovery</source>
        <translation>Recuperación</translation>
    </message>
</context>
</TS>
