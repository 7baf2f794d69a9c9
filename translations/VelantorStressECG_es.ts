<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>BPDialog</name>
    <message>
        <source>Enter BP</source>
        <translation>Ingresar PA</translation>
    </message>
    <message>
        <source>Stage: </source>
        <translation>Etapa: </translation>
    </message>
    <message>
        <source>SBP / DBP</source>
        <translation>PAS / PAD</translation>
    </message>
    <message>
        <source>Systolic blood pressure, mmHg</source>
        <translation>Presión arterial sistólica, mmHg</translation>
    </message>
    <message>
        <source>Diastolic blood pressure, mmHg</source>
        <translation>Presión arterial diastólica, mmHg</translation>
    </message>
    <message>
        <source>Print this stage</source>
        <translation>Imprimir esta etapa</translation>
    </message>
</context>
<context>
    <name>Desktop</name>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Información</translation>
    </message>
    <message>
        <source>%1 is already running</source>
        <translation>%1 ya se está ejecutando</translation>
    </message>
    <message>
        <source>Unspecified application error</source>
        <translation>Error desconocido de la aplicación</translation>
    </message>
</context>
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
        <translation>Etiquetas y escala de tiempo</translation>
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
        <translation>Marcas fiduciales</translation>
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
    <name>EcgMonitorWindow</name>
    <message>
        <source>ECG</source>
        <translation>ECG</translation>
    </message>
    <message>
        <source>Patient</source>
        <translation>Paciente</translation>
    </message>
    <message>
        <source>Live ECG</source>
        <translation>ECG en vivo</translation>
    </message>
    <message>
        <source>Live ECG, second panel</source>
        <translation>ECG en vivo, segundo panel</translation>
    </message>
    <message>
        <source>Start recording</source>
        <translation>Iniciar registro</translation>
    </message>
    <message>
        <source>Stop recording</source>
        <translation>Detener registro</translation>
    </message>
    <message>
        <source>Repeat recording</source>
        <translation>Repetir registro</translation>
    </message>
    <message>
        <source>Save recording</source>
        <translation>Guardar registro</translation>
    </message>
    <message>
        <source>mm/sec</source>
        <translation>mm/s</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Velocidad</translation>
    </message>
    <message>
        <source>Speed: &lt;b&gt;12.5 mm/sec&lt;/b&gt;</source>
        <translation>Velocidad: &lt;b&gt;12.5 mm/s&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Speed: 12.5 mm/sec</source>
        <translation>Velocidad: 12.5 mm/s</translation>
    </message>
    <message>
        <source>Speed: &lt;b&gt;25 mm/sec&lt;/b&gt;</source>
        <translation>Velocidad: &lt;b&gt;25 mm/s&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Speed: 25 mm/sec</source>
        <translation>Velocidad: 25 mm/s</translation>
    </message>
    <message>
        <source>Speed: &lt;b&gt;50 mm/sec&lt;/b&gt;</source>
        <translation>Velocidad: &lt;b&gt;50 mm/s&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Speed: 50 mm/sec</source>
        <translation>Velocidad: 50 mm/s</translation>
    </message>
    <message>
        <source>mm/mV</source>
        <translation>mm/mV</translation>
    </message>
    <message>
        <source>Amplitude</source>
        <translation>Amplitud</translation>
    </message>
    <message>
        <source>Amplitude: &lt;b&gt;5 mm/mV&lt;/b&gt;</source>
        <translation>Amplitud: &lt;b&gt;5 mm/mV&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Amplitude: 5 mm/mV</source>
        <translation>Amplitud: 5 mm/mV</translation>
    </message>
    <message>
        <source>Amplitude: &lt;b&gt;10 mm/mV&lt;/b&gt;</source>
        <translation>Amplitud: &lt;b&gt;10 mm/mV&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Amplitude: 10 mm/mV</source>
        <translation>Amplitud: 10 mm/mV</translation>
    </message>
    <message>
        <source>Amplitude: &lt;b&gt;20 mm/mV&lt;/b&gt;</source>
        <translation>Amplitud: &lt;b&gt;20 mm/mV&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Amplitude: 20 mm/mV</source>
        <translation>Amplitud: 20 mm/mV</translation>
    </message>
    <message>
        <source>Baseline filter</source>
        <translation>Filtro de línea de base</translation>
    </message>
    <message>
        <source>Muscle noise filter</source>
        <translation>Filtro de ruido muscular</translation>
    </message>
    <message>
        <source>Line notch filter</source>
        <translation>Filtro de red eléctrica</translation>
    </message>
    <message>
        <source>Elapsed time</source>
        <translation>Tiempo transcurrido</translation>
    </message>
    <message>
        <source>Heart rate</source>
        <translation>Frecuencia cardíaca</translation>
    </message>
    <message>
        <source>Simulated ECG</source>
        <translation>ECG simulado</translation>
    </message>
</context>
<context>
    <name>ElectrodeStatusWidget</name>
    <message>
        <source>Electrode status</source>
        <translation>Electrodos</translation>
    </message>
    <message>
        <source>Do not show again</source>
        <translation>No volver a mostrar</translation>
    </message>
    <message>
        <source>%1 is off</source>
        <translation>%1 desconectado</translation>
    </message>
    <message>
        <source>%1 is connected</source>
        <translation>%1 conectado</translation>
    </message>
</context>
<context>
    <name>Failure</name>
    <message>
        <source>Communication with ergometer/treadmill device failed.</source>
        <translation>Falló la comunicación con el cicloergómetro o la cinta ergométrica.</translation>
    </message>
    <message>
        <source>Communication with ECG acquiring device failed.</source>
        <translation>Falló la comunicación con el equipo de adquisición de ECG.</translation>
    </message>
    <message>
        <source>The recording cannot be written. Is the disk full?</source>
        <translation>No se puede escribir el registro. ¿Está lleno el disco?</translation>
    </message>
    <message>
        <source>Port not found</source>
        <translation>No se encontró el puerto</translation>
    </message>
    <message>
        <source>Invalid port</source>
        <translation>Puerto no válido</translation>
    </message>
    <message>
        <source>Port already in use</source>
        <translation>El puerto ya está en uso</translation>
    </message>
    <message>
        <source>Connect failed</source>
        <translation>Falló la conexión</translation>
    </message>
    <message>
        <source>GetCommState failed</source>
        <translation>Falló la lectura del estado del puerto (GetCommState)</translation>
    </message>
    <message>
        <source>SetCommState failed</source>
        <translation>Falló la configuración del puerto (SetCommState)</translation>
    </message>
    <message>
        <source>GetCommTimeouts failed</source>
        <translation>Falló la lectura de los tiempos del puerto (GetCommTimeouts)</translation>
    </message>
    <message>
        <source>SetCommTimeouts failed</source>
        <translation>Falló la configuración de los tiempos del puerto (SetCommTimeouts)</translation>
    </message>
    <message>
        <source>SetupComm failed</source>
        <translation>Falló la preparación del puerto (SetupComm)</translation>
    </message>
    <message>
        <source>PurgeComm failed</source>
        <translation>Falló el vaciado del puerto (PurgeComm)</translation>
    </message>
    <message>
        <source>Cannot create pipe</source>
        <translation>No se puede crear una tubería del sistema</translation>
    </message>
    <message>
        <source>Device not found</source>
        <translation>No se encontró el equipo</translation>
    </message>
    <message>
        <source>Device read error</source>
        <translation>Error de lectura del equipo</translation>
    </message>
    <message>
        <source>No se pudo abrir el puerto (CreateFile)</source>
        <translation>No se pudo abrir el puerto (CreateFile)</translation>
    </message>
    <message>
        <source>Kipnet device did not respond (command GO)</source>
        <translation>El equipo Kipnet no respondió (comando GO)</translation>
    </message>
    <message>
        <source>Kipnet device did not respond (command ST)</source>
        <translation>El equipo Kipnet no respondió (comando ST)</translation>
    </message>
    <message>
        <source>Kipnet device did not respond (command V)</source>
        <translation>El equipo Kipnet no respondió (comando V)</translation>
    </message>
    <message>
        <source>Kipnet device did not respond (command E)</source>
        <translation>El equipo Kipnet no respondió (comando E)</translation>
    </message>
    <message>
        <source>Kipnet device did not respond (command N)</source>
        <translation>El equipo Kipnet no respondió (comando N)</translation>
    </message>
    <message>
        <source>Cannot open file</source>
        <translation>No se puede abrir el archivo</translation>
    </message>
    <message>
        <source>Cannot create file</source>
        <translation>No se puede crear el archivo</translation>
    </message>
    <message>
        <source>Cannot create study file</source>
        <translation>No se puede crear el archivo del estudio</translation>
    </message>
    <message>
        <source>Write error</source>
        <translation>Error de escritura</translation>
    </message>
    <message>
        <source>Cannot open protocol table</source>
        <translation>No se puede abrir la tabla de protocolos</translation>
    </message>
    <message>
        <source>Cannot read protocol table</source>
        <translation>No se puede leer la tabla de protocolos</translation>
    </message>
    <message>
        <source>SQLite driver not available</source>
        <translation>El controlador SQLite no está disponible</translation>
    </message>
    <message>
        <source>Undefined database path</source>
        <translation>No está definida la ubicación de la base de datos</translation>
    </message>
    <message>
        <source>Study is open</source>
        <translation>El estudio está abierto</translation>
    </message>
    <message>
        <source>unimplemented</source>
        <translation>función no disponible</translation>
    </message>
    <message>
        <source>File is not a valid Velantor study Zip archive</source>
        <translation>El archivo no es un archivo Zip válido de un estudio Velantor</translation>
    </message>
    <message>
        <source>Cannot create zip archive</source>
        <translation>No se puede crear el archivo zip</translation>
    </message>
    <message>
        <source>Cannot open new file in zip</source>
        <translation>No se puede abrir un archivo nuevo en el zip</translation>
    </message>
    <message>
        <source>Cannot write data in zip file</source>
        <translation>No se pueden escribir datos en el archivo zip</translation>
    </message>
    <message>
        <source>Cannot close file in zip</source>
        <translation>No se puede cerrar un archivo en el zip</translation>
    </message>
    <message>
        <source>Cannot close zip archive</source>
        <translation>No se puede cerrar el archivo zip</translation>
    </message>
    <message>
        <source>Cannot open zip archive</source>
        <translation>No se puede abrir el archivo zip</translation>
    </message>
    <message>
        <source>Cannot read zip archive</source>
        <translation>No se puede leer el archivo zip</translation>
    </message>
    <message>
        <source>Cannot read comment in zip archive</source>
        <translation>No se puede leer el comentario del archivo zip</translation>
    </message>
    <message>
        <source>Cannot read file in zip archive</source>
        <translation>No se puede leer un archivo del zip</translation>
    </message>
    <message>
        <source>Corrupt file read from zip archive</source>
        <translation>Se leyó un archivo dañado del zip</translation>
    </message>
    <message>
        <source>Cannot get file info from zip archive</source>
        <translation>No se pueden obtener los datos de un archivo del zip</translation>
    </message>
    <message>
        <source>Cannot open file in zip archive</source>
        <translation>No se puede abrir un archivo del zip</translation>
    </message>
    <message>
        <source>Cannot read WFDB header</source>
        <translation>No se puede leer el encabezado WFDB</translation>
    </message>
    <message>
        <source>Cannot read WFDB signal file</source>
        <translation>No se puede leer el archivo de señales WFDB</translation>
    </message>
    <message>
        <source>Cannot read WFDB annotations</source>
        <translation>No se pueden leer las anotaciones WFDB</translation>
    </message>
    <message>
        <source>Cannot resample WFDB record</source>
        <translation>No se puede remuestrear el registro WFDB</translation>
    </message>
    <message>
        <source>WFDB record has no ECG</source>
        <translation>El registro WFDB no tiene ECG</translation>
    </message>
    <message>
        <source>WFDB record has no samples</source>
        <translation>El registro WFDB no tiene muestras</translation>
    </message>
    <message>
        <source>WFDB record has more than 16 signals</source>
        <translation>El registro WFDB tiene más de 16 señales</translation>
    </message>
    <message>
        <source>WFDB record has less than 50 samples a second</source>
        <translation>El registro WFDB tiene menos de 50 muestras por segundo</translation>
    </message>
    <message>
        <source>WFDB record is longer than 14 days</source>
        <translation>El registro WFDB dura más de 14 días</translation>
    </message>
    <message>
        <source>Unexpected error</source>
        <translation>Error inesperado</translation>
    </message>
    <message>
        <source>Unspecified application error</source>
        <translation>Error de aplicación no especificado</translation>
    </message>
    <message>
        <source>pendiente - filtro no definido</source>
        <translation>pendiente - filtro no definido</translation>
    </message>
    <message>
        <source>Error: %1</source>
        <translation>Error: %1</translation>
    </message>
    <message>
        <source>Unknown protocol %1</source>
        <translation>Protocolo desconocido %1</translation>
    </message>
</context>
<context>
    <name>LeadMenu</name>
    <message>
        <source>Black</source>
        <translation>Negro</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Azul</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Claro</translation>
    </message>
    <message>
        <source>Show leads</source>
        <translation>Derivaciones</translation>
    </message>
    <message>
        <source>Average beat</source>
        <translation>Latido promedio</translation>
    </message>
    <message>
        <source>Double panel</source>
        <translation>Panel doble</translation>
    </message>
    <message>
        <source>Hexaxial order</source>
        <translation>Orden hexaxial</translation>
    </message>
    <message>
        <source>Color scheme</source>
        <translation>Esquema de colores</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>New stress &amp;test</source>
        <translation>Nueva prueba de &amp;esfuerzo</translation>
    </message>
    <message>
        <source>Proto&amp;col</source>
        <translation>Proto&amp;colo</translation>
    </message>
    <message>
        <source>Protocol</source>
        <translation>Protocolo</translation>
    </message>
    <message>
        <source>Mo&amp;re...</source>
        <translation>Má&amp;s...</translation>
    </message>
    <message>
        <source>&amp;Worklist...</source>
        <translation>&amp;Lista de trabajo...</translation>
    </message>
    <message>
        <source>&amp;Start</source>
        <translation>&amp;Iniciar</translation>
    </message>
    <message>
        <source>New EC&amp;G</source>
        <translation>Nuevo EC&amp;G</translation>
    </message>
    <message>
        <source>Open stu&amp;dy</source>
        <translation>A&amp;brir estudio</translation>
    </message>
    <message>
        <source>Recent studies</source>
        <translation>Estudios recientes</translation>
    </message>
    <message>
        <source>Id</source>
        <translation>Id</translation>
    </message>
    <message>
        <source>Patient</source>
        <translation>Paciente</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Fecha</translation>
    </message>
    <message>
        <source>Op&amp;en</source>
        <translation>Ab&amp;rir</translation>
    </message>
    <message>
        <source>Config&amp;uration</source>
        <translation>Config&amp;uración</translation>
    </message>
    <message>
        <source>Cl&amp;ose</source>
        <translation>Cerr&amp;ar</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
</context>
<context>
    <name>MonitorStatus</name>
    <message>
        <source>The battery is low</source>
        <translation>Batería baja</translation>
    </message>
    <message>
        <source>The device is not connected</source>
        <translation>El equipo no está conectado</translation>
    </message>
    <message>
        <source>Inoperative ECG</source>
        <translation>ECG no operativo</translation>
    </message>
</context>
<context>
    <name>PleaseWait</name>
    <message>
        <source>Please wait...</source>
        <translation>Espere, por favor...</translation>
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
        <translation>Inicio de P</translation>
    </message>
    <message>
        <source>P off</source>
        <translation>Fin de P</translation>
    </message>
    <message>
        <source>P peak</source>
        <translation>Pico de P</translation>
    </message>
    <message>
        <source>QRS on</source>
        <translation>Inicio de QRS</translation>
    </message>
    <message>
        <source>QRS off</source>
        <translation>Fin de QRS</translation>
    </message>
    <message>
        <source>T on</source>
        <translation>Inicio de T</translation>
    </message>
    <message>
        <source>T off</source>
        <translation>Fin de T</translation>
    </message>
    <message>
        <source>T peak</source>
        <translation>Pico de T</translation>
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
    <name>QuickFields</name>
    <message>
        <source>&amp;Last name</source>
        <translation>A&amp;pellido</translation>
    </message>
    <message>
        <source>&amp;First name</source>
        <translation>&amp;Nombre</translation>
    </message>
    <message>
        <source>Last name</source>
        <translation>Apellido</translation>
    </message>
    <message>
        <source>First name</source>
        <translation>Nombre</translation>
    </message>
    <message>
        <source>&amp;Age</source>
        <translation>E&amp;dad</translation>
    </message>
    <message>
        <source>Sex</source>
        <translation>Sexo</translation>
    </message>
    <message>
        <source>Age in years</source>
        <translation>Edad en años</translation>
    </message>
    <message>
        <source>&amp;Male</source>
        <translation>&amp;Masculino</translation>
    </message>
    <message>
        <source>F&amp;emale</source>
        <translation>&amp;Femenino</translation>
    </message>
    <message>
        <source>&amp;Patient ID</source>
        <translation>N.º de pacien&amp;te</translation>
    </message>
    <message>
        <source>Perso&amp;n ID</source>
        <translation>N.º de d&amp;ocumento</translation>
    </message>
    <message>
        <source>Patient ID</source>
        <translation>N.º de paciente</translation>
    </message>
    <message>
        <source>Person ID</source>
        <translation>N.º de documento</translation>
    </message>
</context>
<context>
    <name>RecordingReview</name>
    <message>
        <source>Recorded ECG</source>
        <translation>Registro de ECG</translation>
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
<context>
    <name>StressStart</name>
    <message>
        <source>There is not enough free space on disk.
Please free at least 50 MB to start a new study.</source>
        <translation>No hay suficiente espacio libre en el disco.
Libere al menos 50 MB para iniciar un estudio nuevo.</translation>
    </message>
</context>
<context>
    <name>StudyDialog</name>
    <message>
        <source>Study data</source>
        <translation>Estudio</translation>
    </message>
    <message>
        <source>Categories</source>
        <translation>Categorías</translation>
    </message>
    <message>
        <source>Patient</source>
        <translation>Paciente</translation>
    </message>
    <message>
        <source>Risk factors</source>
        <translation>Factores de riesgo</translation>
    </message>
    <message>
        <source>Study info</source>
        <translation>Datos del estudio</translation>
    </message>
    <message>
        <source>Protocol</source>
        <translation>Protocolo</translation>
    </message>
    <message>
        <source>Repeat patient</source>
        <translation>Usar último paciente</translation>
    </message>
    <message>
        <source>Patient ID / Medical record</source>
        <translation>N.º de paciente / HC</translation>
    </message>
    <message>
        <source>ID type</source>
        <translation>Tipo de documento</translation>
    </message>
    <message>
        <source>ID number</source>
        <translation>N.º de documento</translation>
    </message>
    <message>
        <source>Last name(s)</source>
        <translation>Apellido(s)</translation>
    </message>
    <message>
        <source>First name(s)</source>
        <translation>Nombre(s)</translation>
    </message>
    <message>
        <source>Birth date</source>
        <translation>Fecha de nacimiento</translation>
    </message>
    <message>
        <source>day/month/year</source>
        <translation>día/mes/año</translation>
    </message>
    <message>
        <source>Age</source>
        <translation>Edad</translation>
    </message>
    <message>
        <source>Sex</source>
        <translation>Sexo</translation>
    </message>
    <message>
        <source>Weight (Kg)</source>
        <translation>Peso (kg)</translation>
    </message>
    <message>
        <source>Height (cm)</source>
        <translation>Talla (cm)</translation>
    </message>
    <message>
        <source>BMI</source>
        <translation>IMC</translation>
    </message>
    <message>
        <source>Medical insurance</source>
        <translation>Seguro / Obra social</translation>
    </message>
    <message>
        <source>Medical insurance number</source>
        <translation>N.º de afiliado</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Dirección</translation>
    </message>
    <message>
        <source>City</source>
        <translation>Ciudad</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Provincia / Departamento</translation>
    </message>
    <message>
        <source>Phone number</source>
        <translation>Teléfono</translation>
    </message>
    <message>
        <source>Training zone </source>
        <translation>Zona de entrenamiento </translation>
    </message>
    <message>
        <source>HR max.</source>
        <translation>FC máx.</translation>
    </message>
    <message>
        <source>HR submax.</source>
        <translation>FC submáx.</translation>
    </message>
    <message>
        <source>Submax %</source>
        <translation>% de FC máxima</translation>
    </message>
    <message>
        <source>Factor</source>
        <translation>Factor</translation>
    </message>
    <message>
        <source>Comments</source>
        <translation>Comentarios</translation>
    </message>
    <message>
        <source>Comments...</source>
        <translation>Comentarios...</translation>
    </message>
    <message>
        <source>Date/time</source>
        <translation>Fecha/hora</translation>
    </message>
    <message>
        <source>Technician name</source>
        <translation>Técnico</translation>
    </message>
    <message>
        <source>Doctor name</source>
        <translation>Médico</translation>
    </message>
    <message>
        <source>Referred by</source>
        <translation>Médico solicitante</translation>
    </message>
    <message>
        <source>Medication</source>
        <translation>Medicación</translation>
    </message>
    <message>
        <source>Indication</source>
        <translation>Motivo del estudio</translation>
    </message>
    <message>
        <source>Protocols...</source>
        <translation>Protocolos...</translation>
    </message>
    <message>
        <source>New ECG study</source>
        <translation>Nuevo ECG</translation>
    </message>
    <message>
        <source>New Stress Test study</source>
        <translation>Nueva prueba de esfuerzo</translation>
    </message>
    <message>
        <source>Male</source>
        <translation>Masculino</translation>
    </message>
    <message>
        <source>Female</source>
        <translation>Femenino</translation>
    </message>
    <message>
        <source>Comments on %1</source>
        <translation>Comentarios sobre %1</translation>
    </message>
</context>
<context>
    <name>StudyExport</name>
    <message>
        <source>Information</source>
        <translation>Información</translation>
    </message>
    <message>
        <source>Study file was succesfully exported to folder: %1</source>
        <translation>El archivo del estudio se exportó correctamente a la carpeta: %1</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Advertencia</translation>
    </message>
    <message>
        <source>Study file could not be exported to folder: %1
Please check shared folder access with your network administrator.</source>
        <translation>No se pudo exportar el archivo del estudio a la carpeta: %1
Verifique con el administrador de la red el acceso a la carpeta compartida.</translation>
    </message>
</context>
<context>
    <name>WarningBoxes</name>
    <message>
        <source>Warning</source>
        <translation>Advertencia</translation>
    </message>
</context>
</TS>
