<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>CameraKinds</name>
    <message>
        <source>No Camera</source>
        <translation>Keine Kamera</translation>
    </message>
    <message>
        <source>No Lens</source>
        <translation>Kein Objektiv</translation>
    </message>
    <message>
        <source>No Serial Number</source>
        <translation>Keine Seriennummer</translation>
    </message>
    <message>
        <source>Aperture</source>
        <translation>Blende</translation>
    </message>
    <message>
        <source>Focal Length</source>
        <translation>Brennweite</translation>
    </message>
    <message>
        <source>Exposure Time</source>
        <translation>Belichtungszeit</translation>
    </message>
    <message>
        <source>Digital Zoom</source>
        <translation>Digitalzoom</translation>
    </message>
    <message>
        <source>ISO</source>
        <translation>ISO</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
</context>
<context>
    <name>DateAlignment</name>
    <message>
        <source>Dates cannot change while a save runs.</source>
        <translation>Während des Speicherns lassen sich Daten nicht ändern.</translation>
    </message>
    <message>
        <source>Select the items to align, on the timeline or in the list.</source>
        <translation>Wählen Sie die anzugleichenden Objekte auf der Zeitleiste oder in der Liste.</translation>
    </message>
    <message>
        <source>Items of a slideshow-only folder have no dates of their own to align.</source>
        <translation>Objekte eines Nur-Diashow-Ordners haben keine eigenen Daten zum Angleichen.</translation>
    </message>
    <message>
        <source>Aligning gives each item a date of its own: turn on Edit &gt; Change Items One by One for these folders first.</source>
        <translation>Angleichen gibt jedem Objekt ein eigenes Datum: Schalten Sie für diese Ordner zuerst Bearbeiten &gt; Objekte einzeln ändern ein.</translation>
    </message>
    <message>
        <source>Matching gaps needs three or more selected items.</source>
        <translation>Passende Lücken brauchen drei oder mehr ausgewählte Objekte.</translation>
    </message>
    <message>
        <source>This rule needs two or more selected items.</source>
        <translation>Diese Regel braucht zwei oder mehr ausgewählte Objekte.</translation>
    </message>
    <message>
        <source>The date of the selected item cannot be changed.</source>
        <translation>Das Datum des ausgewählten Objekts lässt sich nicht ändern.</translation>
    </message>
</context>
<context>
    <name>DateChanges</name>
    <message>
        <source> and </source>
        <translation> und </translation>
    </message>
</context>
<context>
    <name>DateDisplay</name>
    <message>
        <source>%1%2 d %3</source>
        <translation>%1%2 T %3</translation>
    </message>
    <message>
        <source>no date</source>
        <translation>kein Datum</translation>
    </message>
    <message>
        <source>when saved</source>
        <translation>beim Speichern</translation>
    </message>
</context>
<context>
    <name>DateElementEditor</name>
    <message>
        <source>Year</source>
        <translation>Jahr</translation>
    </message>
    <message>
        <source>Month</source>
        <translation>Monat</translation>
    </message>
    <message>
        <source>Day</source>
        <translation>Tag</translation>
    </message>
    <message>
        <source>Hour</source>
        <translation>Stunde</translation>
    </message>
    <message>
        <source>Minute</source>
        <translation>Minute</translation>
    </message>
    <message>
        <source>Second</source>
        <translation>Sekunde</translation>
    </message>
</context>
<context>
    <name>EditActions</name>
    <message>
        <source>By Matching Gaps</source>
        <translation>Nach passenden Lücken</translation>
    </message>
    <message>
        <source>By Minimizing Gaps</source>
        <translation>Nach kleinsten Lücken</translation>
    </message>
    <message>
        <source>By File Name</source>
        <translation>Nach Dateiname</translation>
    </message>
    <message>
        <source>By Reversing</source>
        <translation>Umkehren</translation>
    </message>
    <message>
        <source>By Reversing Intervals</source>
        <translation>Abstände umkehren</translation>
    </message>
    <message>
        <source>EXIF Digitized Date (File)</source>
        <translation>EXIF-Digitalisierungsdatum (Datei)</translation>
    </message>
    <message>
        <source>EXIF Digitized Date (New)</source>
        <translation>EXIF-Digitalisierungsdatum (neu)</translation>
    </message>
    <message>
        <source>TIFF Date (File)</source>
        <translation>TIFF-Datum (Datei)</translation>
    </message>
    <message>
        <source>TIFF Date (New)</source>
        <translation>TIFF-Datum (neu)</translation>
    </message>
    <message>
        <source>File Creation Date (File)</source>
        <translation>Erstellungsdatum der Datei (Datei)</translation>
    </message>
    <message>
        <source>File Creation Date (New)</source>
        <translation>Erstellungsdatum der Datei (neu)</translation>
    </message>
    <message>
        <source>File Modification Date (File)</source>
        <translation>Änderungsdatum der Datei (Datei)</translation>
    </message>
    <message>
        <source>File Modification Date (New)</source>
        <translation>Änderungsdatum der Datei (neu)</translation>
    </message>
</context>
<context>
    <name>ExiftoolBridge</name>
    <message>
        <source>a path with a line break cannot be given to exiftool</source>
        <translation>ein Pfad mit Zeilenumbruch kann exiftool nicht übergeben werden</translation>
    </message>
    <message>
        <source>the file cannot be kept for an undo before exiftool writes it</source>
        <translation>die Datei kann vor dem Schreiben durch exiftool nicht für ein Widerrufen aufbewahrt werden</translation>
    </message>
    <message>
        <source>exiftool did not answer in time</source>
        <translation>exiftool hat nicht rechtzeitig geantwortet</translation>
    </message>
    <message>
        <source>exiftool changed nothing</source>
        <translation>exiftool hat nichts geändert</translation>
    </message>
    <message>
        <source>the file exiftool wrote cannot be read again</source>
        <translation>die von exiftool geschriebene Datei lässt sich nicht wieder lesen</translation>
    </message>
    <message>
        <source>no date to add</source>
        <translation>kein Datum zum Hinzufügen</translation>
    </message>
    <message>
        <source>no stamp to extend</source>
        <translation>kein Zeitstempel zum Ergänzen</translation>
    </message>
    <message>
        <source>no location to write</source>
        <translation>kein Ort zum Schreiben</translation>
    </message>
</context>
<context>
    <name>ImportErrors</name>
    <message numerus="yes">
        <source>and %n more</source>
        <translation>
            <numerusform>und %n weitere</numerusform>
            <numerusform>und %n weitere</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>KeyboardHelp</name>
    <message>
        <source>← / →</source>
        <translation>← / →</translation>
    </message>
    <message>
        <source>Select the previous or next item</source>
        <translation>Vorheriges oder nächstes Objekt auswählen</translation>
    </message>
    <message>
        <source>Shift+← / →</source>
        <translation>Umschalt+← / →</translation>
    </message>
    <message>
        <source>Add the previous or next item to the selection</source>
        <translation>Vorheriges oder nächstes Objekt zur Auswahl hinzufügen</translation>
    </message>
    <message>
        <source>Alt+← / →</source>
        <translation>Alt+← / →</translation>
    </message>
    <message>
        <source>Jump through the selection, or to the edge of the run of items</source>
        <translation>Durch die Auswahl springen oder an den Rand der Objektreihe</translation>
    </message>
    <message>
        <source>Alt+↑ / ↓</source>
        <translation>Alt+↑ / ↓</translation>
    </message>
    <message>
        <source>Select the previous or next changed item</source>
        <translation>Vorheriges oder nächstes geändertes Objekt auswählen</translation>
    </message>
    <message>
        <source>Ctrl+Alt+← / →</source>
        <translation>Strg+Alt+← / →</translation>
    </message>
    <message>
        <source>Move the selected items&apos; date past their neighbours; one undo step when the keys are let go</source>
        <translation>Datum der ausgewählten Objekte an den Nachbarn vorbei verschieben; ein Widerrufschritt, wenn die Tasten losgelassen werden</translation>
    </message>
    <message>
        <source>Ctrl+Alt+Meta+← / →</source>
        <translation>Strg+Alt+Meta+← / →</translation>
    </message>
    <message>
        <source>The same, into the next gap</source>
        <translation>Dasselbe, in die nächste Lücke</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Eingabetaste</translation>
    </message>
    <message>
        <source>Type a date for the selected item; on an item of another folder, show its folder</source>
        <translation>Datum für das ausgewählte Objekt eingeben; bei einem Objekt eines anderen Ordners dessen Ordner zeigen</translation>
    </message>
    <message>
        <source>↑ / ↓ while dragging</source>
        <translation>↑ / ↓ beim Ziehen</translation>
    </message>
    <message>
        <source>More or fewer items keep their gap at the edges of the dragged run</source>
        <translation>Mehr oder weniger Objekte behalten ihren Abstand an den Rändern der gezogenen Reihe</translation>
    </message>
    <message>
        <source>Home / End</source>
        <translation>Pos1 / Ende</translation>
    </message>
    <message>
        <source>Scroll to the start or the end</source>
        <translation>Zum Anfang oder Ende blättern</translation>
    </message>
    <message>
        <source>Page Up / Page Down</source>
        <translation>Bild auf / Bild ab</translation>
    </message>
    <message>
        <source>Scroll by a page</source>
        <translation>Um eine Seite blättern</translation>
    </message>
    <message>
        <source>Ctrl+Page Up / Page Down</source>
        <translation>Strg+Bild auf / Bild ab</translation>
    </message>
    <message>
        <source>Scroll by a date chapter</source>
        <translation>Um einen Datumsabschnitt blättern</translation>
    </message>
</context>
<context>
    <name>MoveCommand</name>
    <message numerus="yes">
        <source>Move %n Item(s)</source>
        <translation>
            <numerusform>%n Objekt bewegen</numerusform>
            <numerusform>%n Objekte bewegen</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>MyCompoundFolder</name>
    <message>
        <source>Compound folder with %1 &quot;subfolders&quot;</source>
        <translation>Sammelordner mit %1 „Unterordnern“</translation>
    </message>
</context>
<context>
    <name>MySidebarController</name>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>Slideshow Only</source>
        <translation>Nur Diashow</translation>
    </message>
    <message>
        <source>Unsaved</source>
        <translation>Ungespeichert</translation>
    </message>
    <message>
        <source>Keepers</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>Neutrals</source>
        <translation>Neutral</translation>
    </message>
    <message>
        <source>Rejects</source>
        <translation>Verworfen</translation>
    </message>
    <message>
        <source>Rating</source>
        <translation>Bewertung</translation>
    </message>
    <message>
        <source>Dates</source>
        <translation>Daten</translation>
    </message>
    <message>
        <source>Alerts</source>
        <translation>Hinweise</translation>
    </message>
    <message>
        <source>Save Errors</source>
        <translation>Fehler beim Sichern</translation>
    </message>
    <message>
        <source>Changed by Other Programs</source>
        <translation>Von anderen Programmen geändert</translation>
    </message>
    <message>
        <source>Missing Files</source>
        <translation>Fehlende Dateien</translation>
    </message>
    <message>
        <source>To Be Read Again</source>
        <translation>Neu einzulesen</translation>
    </message>
    <message>
        <source>Major Date Differences</source>
        <translation>Große Datumsabweichungen</translation>
    </message>
    <message>
        <source>Differences from the GPS Time</source>
        <translation>Abweichungen von der GPS-Zeit</translation>
    </message>
    <message>
        <source>Hours Skipped at a Clock Change</source>
        <translation>Bei der Zeitumstellung übersprungene Stunden</translation>
    </message>
    <message>
        <source>Hours Repeated at a Clock Change</source>
        <translation>Bei der Zeitumstellung doppelte Stunden</translation>
    </message>
    <message>
        <source>No Date in the Tags</source>
        <translation>Kein Datum in den Tags</translation>
    </message>
    <message>
        <source>How Long Ago</source>
        <translation>Wie lange her</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <source>Yesterday</source>
        <translation>Gestern</translation>
    </message>
    <message>
        <source>This Month</source>
        <translation>Diesen Monat</translation>
    </message>
    <message>
        <source>Last Month</source>
        <translation>Letzten Monat</translation>
    </message>
    <message>
        <source>This Year</source>
        <translation>Dieses Jahr</translation>
    </message>
    <message>
        <source>Last Year</source>
        <translation>Letztes Jahr</translation>
    </message>
    <message numerus="yes">
        <source>%n Days Ago</source>
        <translation>
            <numerusform>Vor %n Tag</numerusform>
            <numerusform>Vor %n Tagen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n Months Ago</source>
        <translation>
            <numerusform>Vor %n Monat</numerusform>
            <numerusform>Vor %n Monaten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n Years Ago</source>
        <translation>
            <numerusform>Vor %n Jahr</numerusform>
            <numerusform>Vor %n Jahren</numerusform>
        </translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>File Type</source>
        <translation>Dateityp</translation>
    </message>
    <message>
        <source>Lens</source>
        <translation>Objektiv</translation>
    </message>
    <message>
        <source>Camera Settings</source>
        <translation>Kameraeinstellungen</translation>
    </message>
</context>
<context>
    <name>NameChangeCommand</name>
    <message numerus="yes">
        <source>Rename %n File(s)</source>
        <translation>
            <numerusform>%n Datei umbenennen</numerusform>
            <numerusform>%n Dateien umbenennen</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>PicMoving</name>
    <message>
        <source>it has unsaved changes: save or undo them first</source>
        <translation>es hat ungespeicherte Änderungen: zuerst speichern oder widerrufen</translation>
    </message>
    <message>
        <source>its folder cannot be written</source>
        <translation>sein Ordner ist nicht beschreibbar</translation>
    </message>
    <message>
        <source>%1 does not exist</source>
        <translation>%1 existiert nicht</translation>
    </message>
    <message>
        <source>%1: no write access</source>
        <translation>%1: keine Schreibrechte</translation>
    </message>
    <message>
        <source>the folder cannot be written</source>
        <translation>der Ordner ist nicht beschreibbar</translation>
    </message>
</context>
<context>
    <name>PicRatings</name>
    <message>
        <source>Rate as Keeper</source>
        <translation>Als behalten bewerten</translation>
    </message>
    <message>
        <source>Rate as Reject</source>
        <translation>Als verworfen bewerten</translation>
    </message>
    <message>
        <source>Rate as Neutral</source>
        <translation>Als neutral bewerten</translation>
    </message>
</context>
<context>
    <name>PicTrashing</name>
    <message>
        <source>it does not exist</source>
        <translation>sie existiert nicht</translation>
    </message>
    <message>
        <source>no write access</source>
        <translation>keine Schreibrechte</translation>
    </message>
    <message>
        <source>it could not be deleted</source>
        <translation>sie ließ sich nicht löschen</translation>
    </message>
    <message>
        <source>no trash on its file system; kept</source>
        <translation>kein Papierkorb auf ihrem Dateisystem; behalten</translation>
    </message>
</context>
<context>
    <name>PreSaveFindings</name>
    <message>
        <source>The new date falls into the hour a clock change repeats: the stamp written can be read as either time.</source>
        <translation>Das neue Datum fällt in die Stunde, die eine Zeitumstellung wiederholt: Der geschriebene Zeitstempel kann als jede der beiden Zeiten gelesen werden.</translation>
    </message>
    <message>
        <source>A movie cannot hold a date before 1904.</source>
        <translation>Ein Film kann kein Datum vor 1904 aufnehmen.</translation>
    </message>
    <message>
        <source>The new file date lies before 1970, which files cannot hold.</source>
        <translation>Das neue Dateidatum liegt vor 1970; das können Dateien nicht aufnehmen.</translation>
    </message>
    <message>
        <source>The photo and the movie of a Live Photo would drift apart.</source>
        <translation>Foto und Film eines Live Photos würden auseinanderlaufen.</translation>
    </message>
    <message>
        <source>The file is gone since the import; it cannot be saved.</source>
        <translation>Die Datei ist seit dem Import verschwunden; sie kann nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>Another program changed the file since the import; it is left as it is.</source>
        <translation>Ein anderes Programm hat die Datei seit dem Import geändert; sie bleibt, wie sie ist.</translation>
    </message>
    <message>
        <source>A file of the group is gone since the import.</source>
        <translation>Eine Datei der Gruppe ist seit dem Import verschwunden.</translation>
    </message>
    <message>
        <source>Another program changed a file of the group since the import.</source>
        <translation>Ein anderes Programm hat seit dem Import eine Datei der Gruppe geändert.</translation>
    </message>
    <message>
        <source>The folder cannot be reached.</source>
        <translation>Der Ordner ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>The file was read by an older version; import it again.</source>
        <translation>Die Datei wurde von einer älteren Version gelesen; bitte erneut importieren.</translation>
    </message>
    <message>
        <source>The group was read by an older version; import it again.</source>
        <translation>Die Gruppe wurde von einer älteren Version gelesen; bitte erneut importieren.</translation>
    </message>
    <message>
        <source>A date stamp of the file has the year 0000, which names no date: it stays as it is while the other dates move.</source>
        <translation>Ein Zeitstempel der Datei hat das Jahr 0000 und nennt damit kein Datum: Er bleibt, wie er ist, während sich die anderen Daten verschieben.</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Same folder: its items move together; drop on another folder’s item</source>
        <translation>Gleicher Ordner: Seine Objekte bewegen sich gemeinsam; auf einem Objekt eines anderen Ordners ablegen</translation>
    </message>
    <message>
        <source>Over the items that move: drop beside another item</source>
        <translation>Über den bewegten Objekten: neben einem anderen Objekt ablegen</translation>
    </message>
    <message>
        <source>This folder keeps no dates</source>
        <translation>Dieser Ordner führt keine Daten</translation>
    </message>
    <message>
        <source>No gap here to spread the selection into</source>
        <translation>Hier gibt es keine Lücke, in die sich die Auswahl verteilen lässt</translation>
    </message>
    <message>
        <source>Single Files</source>
        <translation>Einzelne Dateien</translation>
    </message>
    <message>
        <source>Import the dropped files without the rest of their folder?</source>
        <translation>Die abgelegten Dateien ohne den Rest ihres Ordners importieren?</translation>
    </message>
    <message>
        <source>Files dropped on their own: %1. Importing single files is turned off; turning it on imports them into a folder that holds only them. Dropped folders are imported either way.</source>
        <translation>Einzeln abgelegte Dateien: %1. Der Import einzelner Dateien ist ausgeschaltet; eingeschaltet kommen sie in einen Ordner, der nur sie enthält. Abgelegte Ordner werden in jedem Fall importiert.</translation>
    </message>
    <message>
        <source>Turn On and Import</source>
        <translation>Einschalten und importieren</translation>
    </message>
    <message>
        <source>Leave Them Out</source>
        <translation>Auslassen</translation>
    </message>
    <message>
        <source>Files Out of Reach</source>
        <translation>Dateien nicht erreichbar</translation>
    </message>
    <message>
        <source>Some files could not be reached (%1).</source>
        <translation>Einige Dateien waren nicht erreichbar (%1).</translation>
    </message>
    <message>
        <source>Their folder cannot be opened. Check that its drive is mounted and that you may read it, then try again.</source>
        <translation>Ihr Ordner lässt sich nicht öffnen. Prüfen Sie, ob das Laufwerk eingehängt ist und Sie Leserechte haben, und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Continue Without Them</source>
        <translation>Ohne sie fortfahren</translation>
    </message>
</context>
<context>
    <name>QuickSelections</name>
    <message>
        <source>Photos</source>
        <translation>Fotos</translation>
    </message>
    <message>
        <source>Movies</source>
        <translation>Filme</translation>
    </message>
    <message>
        <source>Groups</source>
        <translation>Gruppen</translation>
    </message>
    <message>
        <source>Sidecars</source>
        <translation>Begleitdateien</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>File Type</source>
        <translation>Dateityp</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>Date Source</source>
        <translation>Datumsquelle</translation>
    </message>
    <message>
        <source>No Date Source</source>
        <translation>Keine Datumsquelle</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>Landscape</source>
        <translation>Querformat</translation>
    </message>
    <message>
        <source>Portrait</source>
        <translation>Hochformat</translation>
    </message>
    <message>
        <source>Almost Square</source>
        <translation>Fast quadratisch</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Ausrichtung</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Keepers</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>Neutrals</source>
        <translation>Neutral</translation>
    </message>
    <message>
        <source>Rejects</source>
        <translation>Verworfen</translation>
    </message>
    <message>
        <source>With Location</source>
        <translation>Mit Ort</translation>
    </message>
    <message>
        <source>Unsaved Changes</source>
        <translation>Ungespeicherte Änderungen</translation>
    </message>
    <message>
        <source>Location Changes</source>
        <translation>Ortsänderungen</translation>
    </message>
    <message>
        <source>Needing Normalization</source>
        <translation>Normalisierung nötig</translation>
    </message>
    <message>
        <source>Changed by Other Programs</source>
        <translation>Von anderen Programmen geändert</translation>
    </message>
    <message>
        <source>Missing Files</source>
        <translation>Fehlende Dateien</translation>
    </message>
    <message>
        <source>Save Errors</source>
        <translation>Fehler beim Speichern</translation>
    </message>
    <message>
        <source>Major Date Differences</source>
        <translation>Große Datumsabweichungen</translation>
    </message>
    <message>
        <source>Lens</source>
        <translation>Objektiv</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>%1, Serial Number %2</source>
        <translation>%1, Seriennummer %2</translation>
    </message>
</context>
<context>
    <name>RemoveCommand</name>
    <message numerus="yes">
        <source>Remove %n Item(s) from the Working Set</source>
        <translation>
            <numerusform>%n Objekt aus der Arbeitsmenge entfernen</numerusform>
            <numerusform>%n Objekte aus der Arbeitsmenge entfernen</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>SaveErrors</name>
    <message>
        <source>a movie date does not fit its stamp in place</source>
        <translation>ein Filmdatum passt nicht an Ort und Stelle in seinen Zeitstempel</translation>
    </message>
    <message>
        <source>A location could not be added to these files:</source>
        <translation>Diesen Dateien konnte kein Ort hinzugefügt werden:</translation>
    </message>
    <message>
        <source>A location could not be added to the XMP sidecars of these files:</source>
        <translation>Den XMP-Filialdateien dieser Dateien konnte kein Ort hinzugefügt werden:</translation>
    </message>
    <message>
        <source>A new XMP sidecar was not written because a file of its name exists:</source>
        <translation>Eine neue XMP-Filialdatei wurde nicht geschrieben, weil es schon eine Datei dieses Namens gibt:</translation>
    </message>
    <message>
        <source>The location of these files could not be updated:</source>
        <translation>Der Ort dieser Dateien konnte nicht aktualisiert werden:</translation>
    </message>
    <message>
        <source>Date tags could not be added to these files:</source>
        <translation>Diesen Dateien konnten keine Datums-Tags hinzugefügt werden:</translation>
    </message>
    <message>
        <source>XMP dates without seconds could not be extended in these files:</source>
        <translation>XMP-Daten ohne Sekunden konnten in diesen Dateien nicht ergänzt werden:</translation>
    </message>
    <message>
        <source>The dates of these movies could not be written:</source>
        <translation>Die Daten dieser Filme konnten nicht geschrieben werden:</translation>
    </message>
    <message>
        <source>The file dates could not be set:</source>
        <translation>Die Dateidaten konnten nicht gesetzt werden:</translation>
    </message>
    <message>
        <source>These files could not be opened for writing:</source>
        <translation>Diese Dateien ließen sich nicht zum Schreiben öffnen:</translation>
    </message>
    <message>
        <source>These files were changed by another program since the import and were not saved:</source>
        <translation>Diese Dateien wurden seit dem Import von einem anderen Programm geändert und nicht gespeichert:</translation>
    </message>
    <message>
        <source>These files were not found and were not saved:</source>
        <translation>Diese Dateien wurden nicht gefunden und nicht gespeichert:</translation>
    </message>
    <message>
        <source>The XMP data in these files could not be read:</source>
        <translation>Die XMP-Daten dieser Dateien konnten nicht gelesen werden:</translation>
    </message>
    <message>
        <source>These XMP sidecars could not be read or written:</source>
        <translation>Diese XMP-Filialdateien konnten nicht gelesen oder geschrieben werden:</translation>
    </message>
    <message>
        <source>These files could not be opened:</source>
        <translation>Diese Dateien ließen sich nicht öffnen:</translation>
    </message>
    <message>
        <source>These files were changed by another program since the import:</source>
        <translation>Diese Dateien wurden seit dem Import von einem anderen Programm geändert:</translation>
    </message>
    <message>
        <source>These files were not found:</source>
        <translation>Diese Dateien wurden nicht gefunden:</translation>
    </message>
    <message>
        <source>These XMP sidecars are missing:</source>
        <translation>Diese XMP-Filialdateien fehlen:</translation>
    </message>
    <message>
        <source>These groups need a new import before they can be saved:</source>
        <translation>Diese Gruppen müssen neu importiert werden, bevor sie gespeichert werden können:</translation>
    </message>
    <message>
        <source>These groups need a new import:</source>
        <translation>Diese Gruppen müssen neu importiert werden:</translation>
    </message>
    <message>
        <source>A date of these files, or its offset tag, does not read exactly; that date and its tag were left as they were, the others saved:</source>
        <translation>Ein Datum dieser Dateien oder sein Zeitversatz-Tag lässt sich nicht genau lesen; dieses Datum und sein Tag blieben, wie sie waren, die anderen wurden gespeichert:</translation>
    </message>
    <message>
        <source>The new date of these files lies outside 0001-01-02 00:00:00 to 4999-12-31 23:59:59 UTC; they were not saved:</source>
        <translation>Das neue Datum dieser Dateien liegt außerhalb von 0001-01-02 00:00:00 bis 4999-12-31 23:59:59 UTC; sie wurden nicht gespeichert:</translation>
    </message>
    <message>
        <source>These paths are not regular files (a pipe, a socket or a device) and were not opened:</source>
        <translation>Diese Pfade sind keine normalen Dateien (eine Pipe, ein Socket oder ein Gerät) und wurden nicht geöffnet:</translation>
    </message>
    <message>
        <source>Error %1:</source>
        <translation>Fehler %1:</translation>
    </message>
    <message>
        <source>Saving: 1 problem</source>
        <translation>Speichern: 1 Problem</translation>
    </message>
    <message>
        <source>Saving: %1 problems</source>
        <translation>Speichern: %1 Probleme</translation>
    </message>
    <message>
        <source>Files of a group are saved together: when one fails, the group keeps its changes.</source>
        <translation>Die Dateien einer Gruppe werden gemeinsam gespeichert: Scheitert eine, behält die Gruppe ihre Änderungen.</translation>
    </message>
    <message>
        <source>the file dates could not be set</source>
        <translation>die Dateidaten konnten nicht gesetzt werden</translation>
    </message>
    <message>
        <source>cannot be opened for writing (permission denied, or read-only)</source>
        <translation>lässt sich nicht zum Schreiben öffnen (keine Berechtigung oder schreibgeschützt)</translation>
    </message>
    <message>
        <source>changed by another program since the import; not saved</source>
        <translation>seit dem Import von einem anderen Programm geändert; nicht gespeichert</translation>
    </message>
    <message>
        <source>not found; not saved</source>
        <translation>nicht gefunden; nicht gespeichert</translation>
    </message>
    <message>
        <source>its XMP data could not be read</source>
        <translation>ihre XMP-Daten konnten nicht gelesen werden</translation>
    </message>
    <message>
        <source>its XMP sidecar could not be read or written</source>
        <translation>ihre XMP-Filialdatei konnte nicht gelesen oder geschrieben werden</translation>
    </message>
    <message>
        <source>cannot be opened</source>
        <translation>lässt sich nicht öffnen</translation>
    </message>
    <message>
        <source>changed by another program since the import</source>
        <translation>seit dem Import von einem anderen Programm geändert</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>nicht gefunden</translation>
    </message>
    <message>
        <source>its XMP sidecar is missing</source>
        <translation>ihre XMP-Filialdatei fehlt</translation>
    </message>
    <message>
        <source>a date or its offset tag does not read exactly; that date and its tag were left as they were, the other dates saved</source>
        <translation>ein Datum oder sein Zeitversatz-Tag lässt sich nicht genau lesen; dieses Datum und sein Tag blieben, wie sie waren, die anderen Daten wurden gespeichert</translation>
    </message>
    <message>
        <source>the new date lies outside 0001-01-02 00:00:00 to 4999-12-31 23:59:59 UTC; not saved</source>
        <translation>das neue Datum liegt außerhalb von 0001-01-02 00:00:00 bis 4999-12-31 23:59:59 UTC; nicht gespeichert</translation>
    </message>
    <message>
        <source>not a regular file (a pipe, a socket or a device); never opened</source>
        <translation>keine normale Datei (eine Pipe, ein Socket oder ein Gerät); nie geöffnet</translation>
    </message>
    <message>
        <source>error %1</source>
        <translation>Fehler %1</translation>
    </message>
    <message>
        <source>The rating of these files could not be written as xmp:Rating:</source>
        <translation>Die Bewertung dieser Dateien konnte nicht als xmp:Rating geschrieben werden:</translation>
    </message>
</context>
<context>
    <name>SavedDate</name>
    <message>
        <source>Capture date</source>
        <translation>Aufnahmedatum</translation>
    </message>
    <message>
        <source>Digitized date</source>
        <translation>Digitalisierungsdatum</translation>
    </message>
    <message>
        <source>Modify date</source>
        <translation>Änderungsdatum</translation>
    </message>
    <message>
        <source>GPS time (UTC)</source>
        <translation>GPS-Zeit (UTC)</translation>
    </message>
    <message>
        <source>File date</source>
        <translation>Dateidatum</translation>
    </message>
    <message>
        <source>added: the file had none</source>
        <translation>hinzugefügt: Die Datei hatte keines</translation>
    </message>
    <message>
        <source>was older than the new capture date, so it takes that date</source>
        <translation>war älter als das neue Aufnahmedatum und übernimmt es deshalb</translation>
    </message>
    <message>
        <source>moves by the same offset as the camera clock</source>
        <translation>verschiebt sich um denselben Versatz wie die Kamerauhr</translation>
    </message>
    <message>
        <source>takes the new capture date</source>
        <translation>übernimmt das neue Aufnahmedatum</translation>
    </message>
    <message>
        <source>the file&apos;s own date is set by the save</source>
        <translation>das Datum der Datei selbst setzt das Speichern</translation>
    </message>
    <message>
        <source>set by the save&apos;s date rules</source>
        <translation>gesetzt nach den Datumsregeln des Speicherns</translation>
    </message>
</context>
<context>
    <name>Timeline</name>
    <message>
        <source>Move to Shelf</source>
        <translation>Auf die Ablage legen</translation>
    </message>
    <message>
        <source>Move from Shelf</source>
        <translation>Von der Ablage nehmen</translation>
    </message>
</context>
<context>
    <name>TimelineLabels</name>
    <message>
        <source>Folder: %1</source>
        <translation>Ordner: %1</translation>
    </message>
    <message>
        <source>Offset: %1</source>
        <translation>Versatz: %1</translation>
    </message>
    <message>
        <source>In the file: %1</source>
        <translation>In der Datei: %1</translation>
    </message>
</context>
<context>
    <name>TrackLinks</name>
    <message>
        <source>Link Track</source>
        <translation>Track verknüpfen</translation>
    </message>
    <message>
        <source>Unlink Track</source>
        <translation>Track-Verknüpfung lösen</translation>
    </message>
    <message>
        <source>Link to Tracks</source>
        <translation>Mit Tracks verknüpfen</translation>
    </message>
    <message>
        <source>Unlink from Tracks</source>
        <translation>Verknüpfung mit Tracks lösen</translation>
    </message>
</context>
<context>
    <name>TrashCommand</name>
    <message>
        <source>Move to Trash</source>
        <translation>In den Papierkorb legen</translation>
    </message>
</context>
<context>
    <name>XtController</name>
    <message>
        <source>no argument file for exiftool could be written</source>
        <translation>es konnte keine Argumentdatei für exiftool geschrieben werden</translation>
    </message>
    <message>
        <source>exiftool was not found on the PATH; install it (Debian: libimage-exiftool-perl)</source>
        <translation>exiftool wurde im PATH nicht gefunden; bitte installieren (Debian: libimage-exiftool-perl)</translation>
    </message>
    <message>
        <source>exiftool could not be started: %1</source>
        <translation>exiftool ließ sich nicht starten: %1</translation>
    </message>
    <message>
        <source>a path with a line break cannot be passed to exiftool: %1</source>
        <translation>ein Pfad mit Zeilenumbruch kann exiftool nicht übergeben werden: %1</translation>
    </message>
    <message>
        <source>the argument file for exiftool could not be written</source>
        <translation>die Argumentdatei für exiftool konnte nicht geschrieben werden</translation>
    </message>
    <message>
        <source>exiftool stopped before it finished the file</source>
        <translation>exiftool hat aufgehört, bevor die Datei fertig war</translation>
    </message>
</context>
<context>
    <name>ZoneNames</name>
    <message>
        <source>Africa</source>
        <translation>Afrika</translation>
    </message>
    <message>
        <source>America</source>
        <translation>Amerika</translation>
    </message>
    <message>
        <source>Antarctica</source>
        <translation>Antarktis</translation>
    </message>
    <message>
        <source>Arctic</source>
        <translation>Arktis</translation>
    </message>
    <message>
        <source>Asia</source>
        <translation>Asien</translation>
    </message>
    <message>
        <source>Atlantic</source>
        <translation>Atlantik</translation>
    </message>
    <message>
        <source>Australia</source>
        <translation>Australien</translation>
    </message>
    <message>
        <source>Europe</source>
        <translation>Europa</translation>
    </message>
    <message>
        <source>Indian</source>
        <translation>Indischer Ozean</translation>
    </message>
    <message>
        <source>Pacific</source>
        <translation>Pazifik</translation>
    </message>
</context>
<context>
    <name>alignByCopyingOtherFileDate</name>
    <message>
        <source>Copy Other File Date</source>
        <translation>Anderes Dateidatum übernehmen</translation>
    </message>
</context>
<context>
    <name>alignByFileName</name>
    <message>
        <source>Align by File Name</source>
        <translation>Nach Dateiname angleichen</translation>
    </message>
</context>
<context>
    <name>alignByMatchingGaps</name>
    <message>
        <source>Align by Matching Gaps</source>
        <translation>Nach passenden Lücken angleichen</translation>
    </message>
</context>
<context>
    <name>alignByMinimizingGaps</name>
    <message>
        <source>Align by Minimizing Gaps</source>
        <translation>Nach kleinsten Lücken angleichen</translation>
    </message>
</context>
<context>
    <name>alignByMinimizingGapsAlt</name>
    <message>
        <source>Separate Identical Times</source>
        <translation>Gleiche Zeiten trennen</translation>
    </message>
</context>
<context>
    <name>alignByReversing</name>
    <message>
        <source>Reverse Order</source>
        <translation>Reihenfolge umkehren</translation>
    </message>
</context>
<context>
    <name>alignByReversingAlt</name>
    <message>
        <source>Reverse Intervals</source>
        <translation>Abstände umkehren</translation>
    </message>
</context>
<context>
    <name>altDragMultiInSingleMode</name>
    <message>
        <source>Spread Dates</source>
        <translation>Daten verteilen</translation>
    </message>
</context>
<context>
    <name>ambiguityCorrection_undoRedo</name>
    <message>
        <source>Other Hour of a Repeated Hour</source>
        <translation>Andere Stunde einer wiederholten Stunde</translation>
    </message>
</context>
<context>
    <name>dragInSingleMode</name>
    <message>
        <source>Move Dates</source>
        <translation>Daten verschieben</translation>
    </message>
</context>
<context>
    <name>filter_miscDefault_0</name>
    <message>
        <source>Misc. state 6</source>
        <translation>Sonstiger Zustand 6</translation>
    </message>
</context>
<context>
    <name>filter_miscDefault_1</name>
    <message>
        <source>Media type 1</source>
        <translation>Medienart 1</translation>
    </message>
</context>
<context>
    <name>filter_ratingDefault_0</name>
    <message>
        <source>Not rejected</source>
        <translation>Nicht verworfen</translation>
    </message>
</context>
<context>
    <name>filter_ratingDefault_1</name>
    <message>
        <source>Keepers</source>
        <translation>Behalten</translation>
    </message>
</context>
<context>
    <name>imageType</name>
    <message>
        <source>XMP creation date</source>
        <translation>XMP-Erstellungsdatum</translation>
    </message>
    <message>
        <source>EXIF original date</source>
        <translation>EXIF-Originaldatum</translation>
    </message>
    <message>
        <source>XMP digitized date</source>
        <translation>XMP-Digitalisierungsdatum</translation>
    </message>
    <message>
        <source>EXIF digitized date</source>
        <translation>EXIF-Digitalisierungsdatum</translation>
    </message>
    <message>
        <source>XMP modify date</source>
        <translation>XMP-Änderungsdatum</translation>
    </message>
    <message>
        <source>TIFF date</source>
        <translation>TIFF-Datum</translation>
    </message>
    <message>
        <source>file creation date (TIFF date is later)</source>
        <translation>Erstellungsdatum der Datei (TIFF-Datum ist später)</translation>
    </message>
    <message>
        <source>file creation date (EXIF original date is empty)</source>
        <translation>Erstellungsdatum der Datei (EXIF-Originaldatum ist leer)</translation>
    </message>
    <message>
        <source>file creation date (EXIF digitized date is empty)</source>
        <translation>Erstellungsdatum der Datei (EXIF-Digitalisierungsdatum ist leer)</translation>
    </message>
    <message>
        <source>file creation date (TIFF date is empty)</source>
        <translation>Erstellungsdatum der Datei (TIFF-Datum ist leer)</translation>
    </message>
    <message>
        <source>fixed date (EXIF original date is empty)</source>
        <translation>festes Datum (EXIF-Originaldatum ist leer)</translation>
    </message>
    <message>
        <source>fixed date (EXIF digitized date is empty)</source>
        <translation>festes Datum (EXIF-Digitalisierungsdatum ist leer)</translation>
    </message>
    <message>
        <source>fixed date (TIFF date is empty)</source>
        <translation>festes Datum (TIFF-Datum ist leer)</translation>
    </message>
    <message>
        <source>file creation date (no date tags)</source>
        <translation>Erstellungsdatum der Datei (keine Datums-Tags)</translation>
    </message>
    <message>
        <source>import option date (no date tags)</source>
        <translation>Datum aus den Importoptionen (keine Datums-Tags)</translation>
    </message>
    <message>
        <source>no date (unsupported or not read)</source>
        <translation>kein Datum (nicht unterstützt oder nicht gelesen)</translation>
    </message>
    <message>
        <source>file creation date (movie without date)</source>
        <translation>Erstellungsdatum der Datei (Film ohne Datum)</translation>
    </message>
    <message>
        <source>AVI date</source>
        <translation>AVI-Datum</translation>
    </message>
    <message>
        <source>movie header creation date</source>
        <translation>Erstellungsdatum im Filmkopf</translation>
    </message>
    <message>
        <source>movie header modification date</source>
        <translation>Änderungsdatum im Filmkopf</translation>
    </message>
    <message>
        <source>file creation date (movie modification date is later)</source>
        <translation>Erstellungsdatum der Datei (Änderungsdatum des Films ist später)</translation>
    </message>
    <message>
        <source>file creation date (movie header dates are zero)</source>
        <translation>Erstellungsdatum der Datei (Daten im Filmkopf sind null)</translation>
    </message>
    <message>
        <source>fixed date (movie header dates are zero)</source>
        <translation>festes Datum (Daten im Filmkopf sind null)</translation>
    </message>
    <message>
        <source>QuickTime creation date</source>
        <translation>QuickTime-Erstellungsdatum</translation>
    </message>
    <message>
        <source>no date (movie not read)</source>
        <translation>kein Datum (Film nicht gelesen)</translation>
    </message>
    <message>
        <source>XMP IPTC creation date</source>
        <translation>XMP-IPTC-Erstellungsdatum</translation>
    </message>
    <message>
        <source>IPTC creation date</source>
        <translation>IPTC-Erstellungsdatum</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Puts the dates, time zones, places and names of photos and movies in order.</source>
        <translation>Bringt Daten, Zeitzonen, Orte und Namen von Fotos und Filmen in Ordnung.</translation>
    </message>
    <message>
        <source>Folders or files to import at start.</source>
        <translation>Ordner oder Dateien, die beim Start importiert werden.</translation>
    </message>
    <message numerus="yes">
        <source>An interrupted save was finished: %n file(s) completed.</source>
        <translation>
            <numerusform>Ein unterbrochenes Speichern wurde abgeschlossen: %n Datei fertiggestellt.</numerusform>
            <numerusform>Ein unterbrochenes Speichern wurde abgeschlossen: %n Dateien fertiggestellt.</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 was left as it is: %2</source>
        <translation>%1 blieb, wie es ist: %2</translation>
    </message>
    <message>
        <source>Interrupted save</source>
        <translation>Unterbrochenes Speichern</translation>
    </message>
</context>
<context>
    <name>menu_removeDate_selection</name>
    <message>
        <source>Remove Dates</source>
        <translation>Daten entfernen</translation>
    </message>
</context>
<context>
    <name>menu_removeDate_single</name>
    <message>
        <source>Remove Date</source>
        <translation>Datum entfernen</translation>
    </message>
</context>
<context>
    <name>movie_positions</name>
    <message>
        <source>Mark Position</source>
        <translation>Position markieren</translation>
    </message>
    <message>
        <source>Remove Position</source>
        <translation>Position entfernen</translation>
    </message>
    <message>
        <source>Choose Position</source>
        <translation>Position wählen</translation>
    </message>
</context>
<context>
    <name>movie_stills</name>
    <message>
        <source>%1: no positions are kept in the movie</source>
        <translation>%1: Im Film sind keine Positionen gespeichert</translation>
    </message>
    <message>
        <source>%1: the movie has no date for its stills</source>
        <translation>%1: Der Film hat kein Datum für seine Standbilder</translation>
    </message>
</context>
<context>
    <name>orv::AppController</name>
    <message>
        <source>Restore State</source>
        <translation>Stand wiederherstellen</translation>
    </message>
</context>
<context>
    <name>orv::DateSequenceFields</name>
    <message>
        <source>seconds</source>
        <translation>Sekunden</translation>
    </message>
    <message>
        <source>minutes</source>
        <translation>Minuten</translation>
    </message>
    <message>
        <source>hours</source>
        <translation>Stunden</translation>
    </message>
    <message>
        <source>First date:</source>
        <translation>Erstes Datum:</translation>
    </message>
    <message>
        <source>Each next file:</source>
        <translation>Jede weitere Datei:</translation>
    </message>
    <message>
        <source>+ </source>
        <translation>+ </translation>
    </message>
</context>
<context>
    <name>orv::EditActions</name>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Widerrufen</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Copy Date</source>
        <translation>Datum kopieren</translation>
    </message>
    <message>
        <source>Paste Date…</source>
        <translation>Datum einsetzen …</translation>
    </message>
    <message>
        <source>Remove Date</source>
        <translation>Datum entfernen</translation>
    </message>
    <message>
        <source>Remove Dates of Selection</source>
        <translation>Daten der Auswahl entfernen</translation>
    </message>
    <message>
        <source>Remove All Changes</source>
        <translation>Alle Änderungen entfernen</translation>
    </message>
    <message>
        <source>Align</source>
        <translation>Angleichen</translation>
    </message>
    <message>
        <source>Copy Other File Date</source>
        <translation>Anderes Dateidatum übernehmen</translation>
    </message>
    <message>
        <source>Identical times: the order of the items among them is undecided.</source>
        <translation>Gleiche Zeiten: Die Reihenfolge dieser Objekte untereinander ist offen.</translation>
    </message>
    <message>
        <source>Change Items One by One</source>
        <translation>Objekte einzeln ändern</translation>
    </message>
    <message>
        <source>Each item takes its own change instead of the folder offset</source>
        <translation>Jedes Objekt erhält seine eigene Änderung statt des Ordnerversatzes</translation>
    </message>
    <message>
        <source>Previous Changed Item</source>
        <translation>Vorheriges geändertes Objekt</translation>
    </message>
    <message>
        <source>Next Changed Item</source>
        <translation>Nächstes geändertes Objekt</translation>
    </message>
    <message>
        <source>Align the selected items by a rule: each takes its own date</source>
        <translation>Die ausgewählten Objekte nach einer Regel angleichen: Jedes erhält sein eigenes Datum</translation>
    </message>
    <message>
        <source>Align is off: %1</source>
        <translation>Angleichen ist aus: %1</translation>
    </message>
    <message>
        <source>Separate Identical Times</source>
        <translation>Gleiche Zeiten trennen</translation>
    </message>
    <message>
        <source>By Minimizing Gaps</source>
        <translation>Nach kleinsten Lücken</translation>
    </message>
    <message>
        <source>Copy Other Date of the File</source>
        <translation>Anderes Datum der Datei übernehmen</translation>
    </message>
    <message>
        <source>Copy Other Date of Each File</source>
        <translation>Anderes Datum jeder Datei übernehmen</translation>
    </message>
    <message>
        <source>Paste Date</source>
        <translation>Datum einsetzen</translation>
    </message>
    <message>
        <source>Give the selected item the date %1?</source>
        <translation>Dem ausgewählten Objekt das Datum %1 geben?</translation>
    </message>
</context>
<context>
    <name>orv::EmptyTagOptionsDialog</name>
    <message>
        <source>Use each file’s own date</source>
        <translation>Das eigene Datum jeder Datei verwenden</translation>
    </message>
    <message>
        <source>Give them fixed dates:</source>
        <translation>Ihnen feste Daten geben:</translation>
    </message>
    <message>
        <source>Always use the file’s date and don’t ask again</source>
        <translation>Immer das Datum der Datei verwenden und nicht mehr fragen</translation>
    </message>
    <message>
        <source>Empty Date Tags</source>
        <translation>Leere Datums-Tags</translation>
    </message>
    <message>
        <source>&lt;b&gt;Some files in “%1” have date tags with no date in them.&lt;/b&gt;&lt;p&gt;Which date should these files get? Nothing is written to them until you save.&lt;/p&gt;</source>
        <translation>&lt;b&gt;Einige Dateien in „%1“ haben Datums-Tags ohne Datum.&lt;/b&gt;&lt;p&gt;Welches Datum sollen diese Dateien bekommen? Bis Sie speichern, wird nichts in sie geschrieben.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Continue Import</source>
        <translation>Import fortsetzen</translation>
    </message>
</context>
<context>
    <name>orv::ErrorLogWindow</name>
    <message>
        <source>Error Log</source>
        <translation>Fehlerprotokoll</translation>
    </message>
    <message>
        <source>Last Action</source>
        <translation>Letzte Aktion</translation>
    </message>
    <message>
        <source>Log File</source>
        <translation>Protokolldatei</translation>
    </message>
    <message>
        <source>Delete Log</source>
        <translation>Protokoll löschen</translation>
    </message>
    <message>
        <source>Empty the error log file? The errors of earlier runs are lost.</source>
        <translation>Die Fehlerprotokolldatei leeren? Die Fehler früherer Läufe gehen verloren.</translation>
    </message>
</context>
<context>
    <name>orv::FolderListModel</name>
    <message>
        <source>Photos</source>
        <translation>Fotos</translation>
    </message>
    <message>
        <source>Movies</source>
        <translation>Filme</translation>
    </message>
    <message>
        <source>Photos &amp; movies</source>
        <translation>Fotos &amp; Filme</translation>
    </message>
    <message>
        <source>Empty</source>
        <translation>Leer</translation>
    </message>
    <message>
        <source>All Folders</source>
        <translation>Alle Ordner</translation>
    </message>
    <message>
        <source>%1
Importing…</source>
        <translation>%1
Import läuft …</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Items</source>
        <translation>Objekte</translation>
    </message>
    <message>
        <source>Media</source>
        <translation>Medien</translation>
    </message>
</context>
<context>
    <name>orv::FullScreenView</name>
    <message>
        <source>Full Screen</source>
        <translation>Vollbild</translation>
    </message>
    <message>
        <source>Slideshow playback</source>
        <translation>Diashow-Wiedergabe</translation>
    </message>
    <message>
        <source>Neutral</source>
        <translation>Neutral</translation>
    </message>
    <message>
        <source>Keeper</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>Reject</source>
        <translation>Verworfen</translation>
    </message>
    <message numerus="yes">
        <source>Slideshow, %n second(s) each</source>
        <translation>
            <numerusform>Diashow, je %n Sekunde</numerusform>
            <numerusform>Diashow, je %n Sekunden</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>orv::ImportErrorsDialog</name>
    <message>
        <source>Import Problems</source>
        <translation>Probleme beim Import</translation>
    </message>
    <message>
        <source>&lt;b&gt;Some files could not be imported as they are.&lt;/b&gt;&lt;p&gt;Everything else was imported. Nothing was written to any file.&lt;/p&gt;</source>
        <translation>&lt;b&gt;Einige Dateien konnten nicht so importiert werden, wie sie sind.&lt;/b&gt;&lt;p&gt;Alles andere wurde importiert. In keine Datei wurde etwas geschrieben.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Copy Report</source>
        <translation>Bericht kopieren</translation>
    </message>
</context>
<context>
    <name>orv::ImportProgressPanel</name>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Stop importing; folders already imported stay</source>
        <translation>Import anhalten; bereits importierte Ordner bleiben</translation>
    </message>
</context>
<context>
    <name>orv::InfoView</name>
    <message>
        <source>&lt;i&gt;Select an item to see its dates, offsets and place.&lt;/i&gt;</source>
        <translation>&lt;i&gt;Wählen Sie ein Objekt, um seine Daten, Versätze und seinen Ort zu sehen.&lt;/i&gt;</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>not named in the file</source>
        <translation>in der Datei nicht genannt</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>Read from</source>
        <translation>Gelesen aus</translation>
    </message>
    <message>
        <source>Folder offset</source>
        <translation>Ordnerversatz</translation>
    </message>
    <message>
        <source> (not in force: items change one by one)</source>
        <translation> (nicht wirksam: Objekte werden einzeln geändert)</translation>
    </message>
    <message>
        <source>Own offset</source>
        <translation>Eigener Versatz</translation>
    </message>
    <message>
        <source> (not in force: the folder offset is)</source>
        <translation> (nicht wirksam: der Ordnerversatz gilt)</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keiner</translation>
    </message>
    <message>
        <source>changed; a save writes it into the file</source>
        <translation>geändert; das Speichern schreibt ihn in die Datei</translation>
    </message>
    <message>
        <source>Dates in the file</source>
        <translation>Daten in der Datei</translation>
    </message>
    <message>
        <source>now</source>
        <translation>jetzt</translation>
    </message>
    <message>
        <source>after a save</source>
        <translation>nach dem Speichern</translation>
    </message>
    <message>
        <source>unchanged</source>
        <translation>unverändert</translation>
    </message>
</context>
<context>
    <name>orv::KeyboardHelp</name>
    <message>
        <source>Keyboard Shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>What they do</source>
        <translation>Wirkung</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>Befehle</translation>
    </message>
    <message>
        <source>Timeline</source>
        <translation>Zeitleiste</translation>
    </message>
</context>
<context>
    <name>orv::MainWindow</name>
    <message>
        <source>Orvelle</source>
        <translation>Orvelle</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Open Folder…</source>
        <translation>Ordner öffnen …</translation>
    </message>
    <message>
        <source>Open Files…</source>
        <translation>Dateien öffnen …</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Write the changed dates into the files</source>
        <translation>Die geänderten Daten in die Dateien schreiben</translation>
    </message>
    <message>
        <source>Rename…</source>
        <translation>Umbenennen …</translation>
    </message>
    <message>
        <source>Preferences…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>&amp;Time</source>
        <translation>&amp;Zeit</translation>
    </message>
    <message>
        <source>Time Zone Correction…</source>
        <translation>Zeitzonenkorrektur …</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Darstellung</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>Keyboard Shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>About Orvelle</source>
        <translation>Über Orvelle</translation>
    </message>
    <message>
        <source>Drop folders of photos and movies here</source>
        <translation>Ordner mit Fotos und Filmen hier ablegen</translation>
    </message>
    <message>
        <source>Orvelle reads their dates, time zones and places. Nothing is written to your files until you save.</source>
        <translation>Orvelle liest ihre Daten, Zeitzonen und Orte. Bis Sie speichern, wird nichts in Ihre Dateien geschrieben.</translation>
    </message>
    <message>
        <source>Starting the import…</source>
        <translation>Import wird gestartet …</translation>
    </message>
    <message>
        <source>Files inside a photo library package are left out.</source>
        <translation>Dateien in einem Fotomediathek-Paket werden ausgelassen.</translation>
    </message>
    <message>
        <source>No new track in the GPX files.</source>
        <translation>Kein neuer Track in den GPX-Dateien.</translation>
    </message>
    <message numerus="yes">
        <source>Linked %n track(s): %1 item(s) placed.</source>
        <translation>
            <numerusform>%n Track verknüpft: %1 Objekt(e) verortet.</numerusform>
            <numerusform>%n Tracks verknüpft: %1 Objekt(e) verortet.</numerusform>
        </translation>
    </message>
    <message>
        <source>Open Folder</source>
        <translation>Ordner öffnen</translation>
    </message>
    <message>
        <source>Open Files</source>
        <translation>Dateien öffnen</translation>
    </message>
    <message>
        <source>Importing “%1” (folders waiting: %2)</source>
        <translation>„%1“ wird importiert (wartende Ordner: %2)</translation>
    </message>
    <message>
        <source>Importing “%1”</source>
        <translation>„%1“ wird importiert</translation>
    </message>
    <message>
        <source>All Folders</source>
        <translation>Alle Ordner</translation>
    </message>
    <message>
        <source>Folders: %1</source>
        <translation>Ordner: %1</translation>
    </message>
    <message>
        <source>Importing…</source>
        <translation>Import läuft …</translation>
    </message>
    <message>
        <source>No photos or movies here</source>
        <translation>Hier sind keine Fotos oder Filme</translation>
    </message>
    <message>
        <source>Items: %1  ·  Folders: %2</source>
        <translation>Objekte: %1  ·  Ordner: %2</translation>
    </message>
    <message>
        <source>The system watches no more folders: changes made to %1 by other programs are found only when saving.</source>
        <translation>Das System überwacht keine weiteren Ordner: Änderungen anderer Programme an %1 werden erst beim Speichern erkannt.</translation>
    </message>
    <message>
        <source>Building thumbnails: %1 left</source>
        <translation>Miniaturen werden erstellt: noch %1</translation>
    </message>
    <message>
        <source>The thumbnail memory is full: from now on thumbnails are built for what is on screen.</source>
        <translation>Der Speicher für Miniaturen ist voll: Ab jetzt werden Miniaturen nur für das Sichtbare erstellt.</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Unsaved Changes</source>
        <translation>Ungespeicherte Änderungen</translation>
    </message>
    <message>
        <source>Do you want to save the changed dates before quitting?</source>
        <translation>Möchten Sie die geänderten Daten vor dem Beenden speichern?</translation>
    </message>
    <message>
        <source>If you don&apos;t save, your changes are kept for the next start. No file has been changed yet.</source>
        <translation>Wenn Sie nicht speichern, bleiben Ihre Änderungen für den nächsten Start erhalten. Noch wurde keine Datei geändert.</translation>
    </message>
    <message>
        <source>Don&apos;t Save</source>
        <translation>Nicht speichern</translation>
    </message>
    <message>
        <source>&lt;b&gt;Orvelle %1&lt;/b&gt;&lt;p&gt;Puts the dates, time zones, places and names of your photos and movies in order.&lt;/p&gt;</source>
        <translation>&lt;b&gt;Orvelle %1&lt;/b&gt;&lt;p&gt;Bringt Daten, Zeitzonen, Orte und Namen Ihrer Fotos und Filme in Ordnung.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Main</source>
        <translation>Haupt</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Widerrufen</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Info</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>Previews</source>
        <translation>Vorschauen</translation>
    </message>
    <message>
        <source>&amp;Movie</source>
        <translation>&amp;Film</translation>
    </message>
    <message>
        <source>Map</source>
        <translation>Karte</translation>
    </message>
    <message>
        <source>The track began in %1 and the camera wrote no time zone: &quot;Use Track&apos;s Zone&quot; in the Tracks list reads the dates there.</source>
        <translation>Der Track begann in %1, und die Kamera schrieb keine Zeitzone: „Zone des Tracks verwenden“ in der Trackliste liest die Daten dort.</translation>
    </message>
    <message>
        <source>Quit Without Keeping</source>
        <translation>Beenden ohne Aufbewahren</translation>
    </message>
    <message>
        <source>Tracks</source>
        <translation>Tracks</translation>
    </message>
</context>
<context>
    <name>orv::MapView</name>
    <message>
        <source>Map tiles are unavailable (%1); showing the offline map.</source>
        <translation>Kartenkacheln sind nicht verfügbar (%1); die Offline-Karte wird gezeigt.</translation>
    </message>
    <message>
        <source>Offline map: GeoNames zone map (libtimezonemap-data)</source>
        <translation>Offline-Karte: GeoNames-Zonenkarte (libtimezonemap-data)</translation>
    </message>
    <message>
        <source>%1 km</source>
        <translation>%1 km</translation>
    </message>
    <message>
        <source>%1 m</source>
        <translation>%1 m</translation>
    </message>
</context>
<context>
    <name>orv::MapWindow</name>
    <message>
        <source>Hide others</source>
        <translation>Andere ausblenden</translation>
    </message>
    <message>
        <source>Off, the pins outside the filter stay on the map, faded, while there are fewer than the pin limit.</source>
        <translation>Aus: Die Nadeln außerhalb des Filters bleiben blass auf der Karte, solange es weniger sind als die Nadelgrenze.</translation>
    </message>
    <message>
        <source>Filter: %1; the others faded.</source>
        <translation>Filter: %1; die anderen blass.</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Selecting by Rectangle or Radius Takes the Items Without a Place Between</source>
        <translation>Auswahl mit Rechteck oder Radius nimmt die Objekte ohne Ort dazwischen mit</translation>
    </message>
    <message>
        <source>Left and Right Walk Every Item, Not Only Those with a Place</source>
        <translation>Links und rechts gehen durch alle Objekte, nicht nur die mit Ort</translation>
    </message>
    <message>
        <source>Map</source>
        <translation>Karte</translation>
    </message>
    <message>
        <source>Move Location</source>
        <translation>Ort verschieben</translation>
    </message>
    <message>
        <source>Add Location</source>
        <translation>Ort hinzufügen</translation>
    </message>
    <message>
        <source>Copy Location</source>
        <translation>Ort kopieren</translation>
    </message>
    <message>
        <source>Paste Location</source>
        <translation>Ort einsetzen</translation>
    </message>
    <message>
        <source>The clipboard holds no place.</source>
        <translation>Die Zwischenablage enthält keinen Ort.</translation>
    </message>
    <message>
        <source>Select at least three items, the first and the last with a place.</source>
        <translation>Mindestens drei Objekte auswählen, das erste und das letzte mit einem Ort.</translation>
    </message>
    <message>
        <source>Align Locations Evenly</source>
        <translation>Orte gleichmäßig ausrichten</translation>
    </message>
    <message>
        <source>Align Locations by Time</source>
        <translation>Orte nach Zeit ausrichten</translation>
    </message>
    <message numerus="yes">
        <source>%n item(s) on the map. Drag a pin to move its items; double-click to put the selected items there.</source>
        <translation>
            <numerusform>%n Objekt auf der Karte. Eine Nadel ziehen, um ihre Objekte zu verschieben; Doppelklick setzt die ausgewählten Objekte dorthin.</numerusform>
            <numerusform>%n Objekte auf der Karte. Eine Nadel ziehen, um ihre Objekte zu verschieben; Doppelklick setzt die ausgewählten Objekte dorthin.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n selected item(s) without a place.</source>
        <translation>
            <numerusform>%n ausgewähltes Objekt ohne Ort.</numerusform>
            <numerusform>%n ausgewählte Objekte ohne Ort.</numerusform>
        </translation>
    </message>
    <message>
        <source>The zone there is likely %1 (nearest place: %2).</source>
        <translation>Die Zone dort ist wahrscheinlich %1 (nächster Ort: %2).</translation>
    </message>
    <message numerus="yes">
        <source>%n hour(s)</source>
        <translation>
            <numerusform>%n Stunde</numerusform>
            <numerusform>%n Stunden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n item(s) selected on the map and between its pins.</source>
        <translation>
            <numerusform>%n Objekt auf der Karte und zwischen ihren Nadeln ausgewählt.</numerusform>
            <numerusform>%n Objekte auf der Karte und zwischen ihren Nadeln ausgewählt.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n item(s) selected on the map.</source>
        <translation>
            <numerusform>%n Objekt auf der Karte ausgewählt.</numerusform>
            <numerusform>%n Objekte auf der Karte ausgewählt.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minute(s)</source>
        <translation>
            <numerusform>%n Minute</numerusform>
            <numerusform>%n Minuten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n neighbour(s) each side of the main item</source>
        <translation>
            <numerusform>%n Nachbar zu jeder Seite des Hauptobjekts</numerusform>
            <numerusform>%n Nachbarn zu jeder Seite des Hauptobjekts</numerusform>
        </translation>
    </message>
    <message>
        <source>1,000 pins</source>
        <translation>1.000 Nadeln</translation>
    </message>
    <message>
        <source>2,000 pins</source>
        <translation>2.000 Nadeln</translation>
    </message>
    <message>
        <source>500 pins</source>
        <translation>500 Nadeln</translation>
    </message>
    <message>
        <source>Accuracy</source>
        <translation>Genauigkeit</translation>
    </message>
    <message>
        <source>All pins</source>
        <translation>Alle Nadeln</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Filter: %1.</source>
        <translation>Filter: %1.</translation>
    </message>
    <message>
        <source>Neighbours</source>
        <translation>Nachbarn</translation>
    </message>
    <message>
        <source>No pins there.</source>
        <translation>Dort sind keine Nadeln.</translation>
    </message>
    <message>
        <source>Select Within</source>
        <translation>Auswählen im Umkreis</translation>
    </message>
    <message>
        <source>Select an item with a place first.</source>
        <translation>Wählen Sie zuerst ein Objekt mit Ort.</translation>
    </message>
    <message>
        <source>Select by Radius</source>
        <translation>Mit Radius auswählen</translation>
    </message>
    <message>
        <source>Select by Rectangle</source>
        <translation>Mit Rechteck auswählen</translation>
    </message>
    <message>
        <source>Show at most:</source>
        <translation>Höchstens zeigen:</translation>
    </message>
    <message>
        <source>The pin limit shows %1 of %2 pins, those nearest the main item.</source>
        <translation>Die Nadelgrenze zeigt %1 von %2 Nadeln, die dem Hauptobjekt nächsten.</translation>
    </message>
    <message>
        <source>Time around the main item</source>
        <translation>Zeit um das Hauptobjekt</translation>
    </message>
    <message>
        <source>Main item&apos;s track only</source>
        <translation>Nur der Track des Hauptobjekts</translation>
    </message>
    <message>
        <source>When the main item&apos;s place came from a track, only the items of that track&apos;s time show.</source>
        <translation>Stammt der Ort des Hauptobjekts aus einem Track, zeigen sich nur die Objekte aus der Zeit dieses Tracks.</translation>
    </message>
    <message>
        <source>Time chain</source>
        <translation>Zeitkette</translation>
    </message>
    <message>
        <source>Track</source>
        <translation>Track</translation>
    </message>
    <message>
        <source>no gap longer than %1</source>
        <translation>keine Lücke länger als %1</translation>
    </message>
    <message>
        <source>placed less accurately than %1</source>
        <translation>ungenauer platziert als %1</translation>
    </message>
    <message>
        <source>the main item&apos;s track</source>
        <translation>der Track des Hauptobjekts</translation>
    </message>
    <message>
        <source>within %1 of the main item</source>
        <translation>innerhalb von %1 um das Hauptobjekt</translation>
    </message>
</context>
<context>
    <name>orv::MoveActions</name>
    <message>
        <source>Move to Folder…</source>
        <translation>In Ordner bewegen …</translation>
    </message>
    <message>
        <source>Move to Folder</source>
        <translation>In Ordner bewegen</translation>
    </message>
    <message>
        <source>Import the folder the items are to go to first: items move only between imported folders.</source>
        <translation>Importieren Sie zuerst den Ordner, in den die Objekte sollen: Objekte lassen sich nur zwischen importierten Ordnern bewegen.</translation>
    </message>
    <message numerus="yes">
        <source>Move %n item(s), with their grouped files and sidecars, to:</source>
        <translation>
            <numerusform>%n Objekt samt gruppierten Dateien und Filialdateien bewegen nach:</numerusform>
            <numerusform>%n Objekte samt gruppierten Dateien und Filialdateien bewegen nach:</numerusform>
        </translation>
    </message>
    <message>
        <source>Move to Folder: these items stayed where they are:</source>
        <translation>In Ordner bewegen: Diese Objekte blieben, wo sie sind:</translation>
    </message>
    <message numerus="yes">
        <source>%n item(s) stayed where they are.</source>
        <translation>
            <numerusform>%n Objekt blieb, wo es ist.</numerusform>
            <numerusform>%n Objekte blieben, wo sie sind.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>orv::MovieActions</name>
    <message>
        <source>Open Movie</source>
        <translation>Film öffnen</translation>
    </message>
    <message>
        <source>Export Stills from Movies…</source>
        <translation>Standbilder aus Filmen exportieren …</translation>
    </message>
</context>
<context>
    <name>orv::MovieStillSheet</name>
    <message>
        <source>Export Movie Stills</source>
        <translation>Filmstandbilder exportieren</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message numerus="yes">
        <source>%n position(s) kept in %1 movie(s) become files beside each movie.</source>
        <translation>
            <numerusform>%n in %1 Film(en) gespeicherte Position wird zu einer Datei neben dem Film.</numerusform>
            <numerusform>%n in %1 Film(en) gespeicherte Positionen werden zu Dateien neben jedem Film.</numerusform>
        </translation>
    </message>
    <message>
        <source>TIFF</source>
        <translation>TIFF</translation>
    </message>
    <message>
        <source>JPEG</source>
        <translation>JPEG</translation>
    </message>
    <message>
        <source>HEIC (written as JPEG)</source>
        <translation>HEIC (als JPEG geschrieben)</translation>
    </message>
    <message>
        <source>Compressed (LZW)</source>
        <translation>Komprimiert (LZW)</translation>
    </message>
    <message>
        <source>Live Photo pairs (a JPEG and a short movie)</source>
        <translation>Live-Photo-Paare (ein JPEG und ein kurzer Film)</translation>
    </message>
    <message>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <source>Import the new folders</source>
        <translation>Die neuen Ordner importieren</translation>
    </message>
    <message>
        <source>Format:</source>
        <translation>Format:</translation>
    </message>
    <message>
        <source>Quality:</source>
        <translation>Qualität:</translation>
    </message>
    <message>
        <source>Movie length:</source>
        <translation>Filmlänge:</translation>
    </message>
    <message>
        <source>Making the stills…</source>
        <translation>Standbilder werden erstellt …</translation>
    </message>
    <message>
        <source>Stopping after the present still…</source>
        <translation>Halt nach dem aktuellen Standbild …</translation>
    </message>
    <message numerus="yes">
        <source>%1: %n made</source>
        <translation>
            <numerusform>%1: %n erstellt</numerusform>
            <numerusform>%1: %n erstellt</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>, %n existed already and left as they were</source>
        <translation>
            <numerusform>, %n gab es schon, unverändert gelassen</numerusform>
            <numerusform>, %n gab es schon, unverändert gelassen</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>orv::MovieView</name>
    <message>
        <source>Opening the movie…</source>
        <translation>Der Film wird geöffnet …</translation>
    </message>
    <message>
        <source>the movie has no length</source>
        <translation>der Film hat keine Länge</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Positions</source>
        <translation>Positionen</translation>
    </message>
    <message>
        <source>Mark Position</source>
        <translation>Position markieren</translation>
    </message>
    <message>
        <source>Remove Position</source>
        <translation>Position entfernen</translation>
    </message>
    <message>
        <source>Use as Thumbnail and Start</source>
        <translation>Als Miniatur und Start verwenden</translation>
    </message>
    <message>
        <source>Previous Position</source>
        <translation>Vorherige Position</translation>
    </message>
    <message>
        <source>Next Position</source>
        <translation>Nächste Position</translation>
    </message>
    <message>
        <source>Play or Pause</source>
        <translation>Abspielen oder Pause</translation>
    </message>
    <message>
        <source>This movie cannot be played: %1.</source>
        <translation>Dieser Film kann nicht abgespielt werden: %1.</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>The player cannot play this movie (%1); the frames are shown still.</source>
        <translation>Der Player kann diesen Film nicht abspielen (%1); die Bilder werden als Standbilder gezeigt.</translation>
    </message>
    <message>
        <source> (chapter)</source>
        <translation> (Kapitel)</translation>
    </message>
    <message>
        <source> ★</source>
        <translation> ★</translation>
    </message>
</context>
<context>
    <name>orv::MyTimeZonePickerController</name>
    <message>
        <source>hour skipped by the zone</source>
        <translation>von der Zone übersprungene Stunde</translation>
    </message>
    <message>
        <source>hour repeated by the zone</source>
        <translation>von der Zone wiederholte Stunde</translation>
    </message>
    <message>
        <source>offset in a repeated hour</source>
        <translation>Versatz in einer wiederholten Stunde</translation>
    </message>
    <message>
        <source>offset in a skipped hour</source>
        <translation>Versatz in einer übersprungenen Stunde</translation>
    </message>
    <message>
        <source>stored offset off by %1 h</source>
        <translation>gespeicherter Versatz weicht um %1 Std. ab</translation>
    </message>
    <message>
        <source>GPS time off by %1 h</source>
        <translation>GPS-Zeit weicht um %1 Std. ab</translation>
    </message>
    <message>
        <source>new time repeated in the target zone</source>
        <translation>neue Zeit wiederholt sich in der Zielzone</translation>
    </message>
    <message>
        <source>Time Zone Correction</source>
        <translation>Zeitzonenkorrektur</translation>
    </message>
    <message>
        <source>System zone</source>
        <translation>Systemzone</translation>
    </message>
    <message>
        <source>Same as the source</source>
        <translation>Wie die Quelle</translation>
    </message>
    <message>
        <source>Stamps were written in:</source>
        <translation>Zeitstempel wurden geschrieben in:</translation>
    </message>
    <message>
        <source>Save them in:</source>
        <translation>Speichern in:</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Before (source zone)</source>
        <translation>Vorher (Quellzone)</translation>
    </message>
    <message>
        <source>After (target zone)</source>
        <translation>Nachher (Zielzone)</translation>
    </message>
    <message>
        <source>Findings</source>
        <translation>Befunde</translation>
    </message>
    <message>
        <source>Other hour</source>
        <translation>Andere Stunde</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Widerrufen</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Target Zone</source>
        <translation>Zielzone</translation>
    </message>
    <message>
        <source>Source Zone</source>
        <translation>Quellzone</translation>
    </message>
    <message>
        <source>Other Hour</source>
        <translation>Andere Stunde</translation>
    </message>
    <message>
        <source>Select an item to see its dates in both zones.</source>
        <translation>Wählen Sie ein Objekt, um seine Daten in beiden Zonen zu sehen.</translation>
    </message>
    <message numerus="yes">
        <source>%n items selected.</source>
        <translation>
            <numerusform>%n Objekt ausgewählt.</numerusform>
            <numerusform>%n Objekte ausgewählt.</numerusform>
        </translation>
    </message>
    <message>
        <source>%1: read in %2 as %3, written in %4 as %5.</source>
        <translation>%1: gelesen in %2 als %3, geschrieben in %4 als %5.</translation>
    </message>
</context>
<context>
    <name>orv::OffsetBar</name>
    <message>
        <source>Shift dates:</source>
        <translation>Daten verschieben:</translation>
    </message>
    <message>
        <source>Later (+) or earlier (−)</source>
        <translation>Später (+) oder früher (−)</translation>
    </message>
    <message>
        <source> d</source>
        <translation> T</translation>
    </message>
    <message>
        <source>Days</source>
        <translation>Tage</translation>
    </message>
    <message>
        <source> h</source>
        <translation> Std.</translation>
    </message>
    <message>
        <source>Hours</source>
        <translation>Stunden</translation>
    </message>
    <message>
        <source> min</source>
        <translation> Min.</translation>
    </message>
    <message>
        <source>Minutes</source>
        <translation>Minuten</translation>
    </message>
    <message>
        <source> s</source>
        <translation> Sek.</translation>
    </message>
    <message>
        <source>Seconds</source>
        <translation>Sekunden</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Take the folder offset back to zero</source>
        <translation>Ordnerversatz auf null zurücksetzen</translation>
    </message>
    <message>
        <source>Items here are changed one by one, so the folder offset is off.</source>
        <translation>Die Objekte hier werden einzeln geändert, daher ist der Ordnerversatz aus.</translation>
    </message>
    <message>
        <source>Slideshow-only folder: its dates are neither read nor written.</source>
        <translation>Nur-Diashow-Ordner: Seine Daten werden weder gelesen noch geschrieben.</translation>
    </message>
    <message>
        <source>The shift crosses a daylight-saving change.</source>
        <translation>Die Verschiebung überquert eine Sommerzeitumstellung.</translation>
    </message>
</context>
<context>
    <name>orv::PicTableModel</name>
    <message>
        <source>The file is missing.</source>
        <translation>Die Datei fehlt.</translation>
    </message>
    <message>
        <source>The file cannot be read.</source>
        <translation>Die Datei lässt sich nicht lesen.</translation>
    </message>
    <message>
        <source>The file was changed by another program.</source>
        <translation>Die Datei wurde von einem anderen Programm geändert.</translation>
    </message>
    <message>
        <source>Its dates or a sidecar were changed by another program.</source>
        <translation>Ihre Daten oder eine Filialdatei wurden von einem anderen Programm geändert.</translation>
    </message>
    <message>
        <source>The file must be imported again.</source>
        <translation>Die Datei muss erneut importiert werden.</translation>
    </message>
    <message>
        <source>%1 + %2</source>
        <translation>%1 + %2</translation>
    </message>
    <message>
        <source>%1 × %2</source>
        <translation>%1 × %2</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>Date Source</source>
        <translation>Datumsquelle</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>Pixels</source>
        <translation>Pixel</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
</context>
<context>
    <name>orv::PreSaveSummaryDialog</name>
    <message>
        <source>Show this summary before every save</source>
        <translation>Diese Übersicht vor jedem Speichern zeigen</translation>
    </message>
    <message>
        <source>Before Saving</source>
        <translation>Vor dem Speichern</translation>
    </message>
    <message>
        <source>&lt;b&gt;The save will change one file as listed&lt;/b&gt;</source>
        <translation>&lt;b&gt;Das Speichern ändert eine Datei wie aufgeführt&lt;/b&gt;</translation>
    </message>
    <message>
        <source>&lt;b&gt;The save will change %1 files as listed&lt;/b&gt;</source>
        <translation>&lt;b&gt;Das Speichern ändert %1 Dateien wie aufgeführt&lt;/b&gt;</translation>
    </message>
    <message>
        <source>&lt;b&gt;One problem found before saving&lt;/b&gt;</source>
        <translation>&lt;b&gt;Vor dem Speichern wurde ein Problem gefunden&lt;/b&gt;</translation>
    </message>
    <message>
        <source>&lt;b&gt;%1 problems found before saving&lt;/b&gt;</source>
        <translation>&lt;b&gt;Vor dem Speichern wurden %1 Probleme gefunden&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Each row shows the dates the save writes into the file, including those that follow from the new capture date.</source>
        <translation>Jede Zeile zeigt die Daten, die das Speichern in die Datei schreibt, auch jene, die aus dem neuen Aufnahmedatum folgen.</translation>
    </message>
    <message>
        <source>The files with a problem come first and may not be saved as you expect. Everything else is saved as listed.</source>
        <translation>Die Dateien mit einem Problem stehen oben und werden womöglich nicht wie erwartet gespeichert. Alles andere wird wie aufgeführt gespeichert.</translation>
    </message>
    <message>
        <source>Item</source>
        <translation>Objekt</translation>
    </message>
    <message>
        <source>Now in the file</source>
        <translation>Jetzt in der Datei</translation>
    </message>
    <message>
        <source>After the save</source>
        <translation>Nach dem Speichern</translation>
    </message>
    <message>
        <source>Why</source>
        <translation>Warum</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Save Anyway</source>
        <translation>Trotzdem speichern</translation>
    </message>
    <message>
        <source>Write nothing; the items selected here are selected in the window</source>
        <translation>Nichts schreiben; die hier ausgewählten Objekte werden im Fenster ausgewählt</translation>
    </message>
    <message>
        <source>Off: the summary comes only when something stands in the way of a save</source>
        <translation>Aus: Die Übersicht erscheint nur, wenn dem Speichern etwas im Weg steht</translation>
    </message>
    <message>
        <source>no date changes</source>
        <translation>keine Datumsänderungen</translation>
    </message>
    <message>
        <source>Rating (xmp:Rating)</source>
        <translation>Bewertung (xmp:Rating)</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
</context>
<context>
    <name>orv::PreferencesWindow</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Dates in Tags</source>
        <translation>Daten in Tags</translation>
    </message>
    <message>
        <source>Digitized date:</source>
        <translation>Digitalisierungsdatum:</translation>
    </message>
    <message>
        <source>Takes the new capture date</source>
        <translation>Übernimmt das neue Aufnahmedatum</translation>
    </message>
    <message>
        <source>Stays, but never before the capture date</source>
        <translation>Bleibt, aber nie vor dem Aufnahmedatum</translation>
    </message>
    <message>
        <source>Moves along with the capture date</source>
        <translation>Wandert mit dem Aufnahmedatum</translation>
    </message>
    <message>
        <source>Follows the capture date where it was the same</source>
        <translation>Folgt dem Aufnahmedatum, wo es gleich war</translation>
    </message>
    <message>
        <source>Modify date:</source>
        <translation>Änderungsdatum:</translation>
    </message>
    <message>
        <source>Takes the newest date of the tags</source>
        <translation>Übernimmt das neueste Datum der Tags</translation>
    </message>
    <message>
        <source>Stays, but never before the newest date of the tags</source>
        <translation>Bleibt, aber nie vor dem neuesten Datum der Tags</translation>
    </message>
    <message>
        <source>Takes the time of saving</source>
        <translation>Übernimmt den Zeitpunkt des Speicherns</translation>
    </message>
    <message>
        <source>Change the file&apos;s own dates too</source>
        <translation>Auch die Daten der Datei selbst ändern</translation>
    </message>
    <message>
        <source>File creation date:</source>
        <translation>Erstellungsdatum der Datei:</translation>
    </message>
    <message>
        <source>The new capture date</source>
        <translation>Das neue Aufnahmedatum</translation>
    </message>
    <message>
        <source>The new digitized date</source>
        <translation>Das neue Digitalisierungsdatum</translation>
    </message>
    <message>
        <source>The new modify date</source>
        <translation>Das neue Änderungsdatum</translation>
    </message>
    <message>
        <source>File modification date:</source>
        <translation>Änderungsdatum der Datei:</translation>
    </message>
    <message>
        <source>Stays</source>
        <translation>Bleibt</translation>
    </message>
    <message>
        <source>The time of saving</source>
        <translation>Der Zeitpunkt des Speicherns</translation>
    </message>
    <message>
        <source>Dates without Tags</source>
        <translation>Daten ohne Tags</translation>
    </message>
    <message>
        <source>Takes the new date</source>
        <translation>Übernimmt das neue Datum</translation>
    </message>
    <message>
        <source>Stays, but never before the new date</source>
        <translation>Bleibt, aber nie vor dem neuen Datum</translation>
    </message>
    <message>
        <source>Moves along with the new date</source>
        <translation>Wandert mit dem neuen Datum</translation>
    </message>
    <message>
        <source>Follows the new date where it was the same</source>
        <translation>Folgt dem neuen Datum, wo es gleich war</translation>
    </message>
    <message>
        <source>Saving</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Write dates and places into XMP too</source>
        <translation>Daten und Orte auch in XMP schreiben</translation>
    </message>
    <message>
        <source>Write the GPS date and time with a moved date</source>
        <translation>GPS-Datum und -Zeit mit einem verschobenen Datum schreiben</translation>
    </message>
    <message>
        <source>A moved place sets the positioning error to 0</source>
        <translation>Ein versetzter Ort setzt den Positionsfehler auf 0</translation>
    </message>
    <message>
        <source>Put places of RAW files only in sidecars</source>
        <translation>Orte von RAW-Dateien nur in Filialdateien schreiben</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Import</translation>
    </message>
    <message>
        <source>Group RAW and JPEG files and Live Photos</source>
        <translation>RAW- und JPEG-Dateien sowie Live Photos gruppieren</translation>
    </message>
    <message>
        <source>Import subfolders too</source>
        <translation>Auch Unterordner importieren</translation>
    </message>
    <message>
        <source>Write keepers and rejects as XMP ratings (5 and -1) for other programs</source>
        <translation>Behaltene und verworfene als XMP-Bewertung (5 und -1) für andere Programme schreiben</translation>
    </message>
    <message>
        <source>State Tray</source>
        <translation>Ablage</translation>
    </message>
    <message>
        <source>Keep the thumbnails with a working set</source>
        <translation>Die Miniaturen mit einer Arbeitsmenge behalten</translation>
    </message>
    <message>
        <source>Leave the window as it is when a kept working set opens</source>
        <translation>Das Fenster lassen, wie es ist, wenn eine behaltene Arbeitsmenge geöffnet wird</translation>
    </message>
</context>
<context>
    <name>orv::PreviewsBar</name>
    <message>
        <source>The first %1 of %2 selected items</source>
        <translation>Die ersten %1 von %2 ausgewählten Objekten</translation>
    </message>
</context>
<context>
    <name>orv::QuickSelectionActions</name>
    <message>
        <source>Within a Radius: Not Enough Items with a Location</source>
        <translation>Im Umkreis: Zu wenige Objekte mit Ort</translation>
    </message>
    <message>
        <source>Within a Radius: Select an Item with a Location First</source>
        <translation>Im Umkreis: Zuerst ein Objekt mit Ort auswählen</translation>
    </message>
    <message>
        <source>Within a Radius of the Main Item</source>
        <translation>Im Umkreis des Hauptobjekts</translation>
    </message>
    <message>
        <source>&amp;Quick Selection</source>
        <translation>&amp;Schnellauswahl</translation>
    </message>
    <message>
        <source>Categories</source>
        <translation>Kategorien</translation>
    </message>
    <message>
        <source>Quick Selection</source>
        <translation>Schnellauswahl</translation>
    </message>
    <message>
        <source>No Items</source>
        <translation>Keine Objekte</translation>
    </message>
    <message>
        <source>Custom Selection</source>
        <translation>Eigene Auswahl</translation>
    </message>
    <message>
        <source>Keep Selection as Custom Selection</source>
        <translation>Auswahl als eigene Auswahl behalten</translation>
    </message>
    <message>
        <source>%1, Changing Items One by One</source>
        <translation>%1, Objekte einzeln ändern</translation>
    </message>
</context>
<context>
    <name>orv::ReconnectionSheet</name>
    <message>
        <source>Reconnect…</source>
        <translation>Neu verbinden …</translation>
    </message>
    <message>
        <source>Discard…</source>
        <translation>Verwerfen …</translation>
    </message>
    <message>
        <source>Folders Not Found</source>
        <translation>Ordner nicht gefunden</translation>
    </message>
    <message>
        <source>These folders could not be found. Their items and unsaved changes are kept. Show where a folder is now, for example on a disk mounted at another place, or discard it.</source>
        <translation>Diese Ordner wurden nicht gefunden. Ihre Objekte und ungespeicherten Änderungen bleiben erhalten. Zeigen Sie, wo ein Ordner jetzt liegt, zum Beispiel auf einem anderswo eingehängten Datenträger, oder verwerfen Sie ihn.</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Später</translation>
    </message>
    <message numerus="yes">
        <source>%1 — %n item(s)
%2</source>
        <translation>
            <numerusform>%1 — %n Objekt
%2</numerusform>
            <numerusform>%1 — %n Objekte
%2</numerusform>
        </translation>
    </message>
    <message>
        <source>Where Is “%1” Now?</source>
        <translation>Wo liegt „%1“ jetzt?</translation>
    </message>
    <message>
        <source>Not Reconnected</source>
        <translation>Nicht neu verbunden</translation>
    </message>
    <message>
        <source>Reconnected</source>
        <translation>Neu verbunden</translation>
    </message>
    <message>
        <source>Some files are not as the state kept them. They are marked and are not saved.</source>
        <translation>Einige Dateien sind nicht mehr so, wie der Stand sie aufbewahrt hat. Sie sind markiert und werden nicht gespeichert.</translation>
    </message>
    <message>
        <source>Discard Folder</source>
        <translation>Ordner verwerfen</translation>
    </message>
    <message>
        <source>Discard “%1” from the working set? Its unsaved changes are lost; its files stay as they are.</source>
        <translation>„%1“ aus der Arbeitsmenge verwerfen? Seine ungespeicherten Änderungen gehen verloren; seine Dateien bleiben, wie sie sind.</translation>
    </message>
</context>
<context>
    <name>orv::RenameSheet</name>
    <message numerus="yes">
        <source>Rename %n File(s)</source>
        <translation>
            <numerusform>%n Datei umbenennen</numerusform>
            <numerusform>%n Dateien umbenennen</numerusform>
        </translation>
    </message>
    <message>
        <source>Text with elements in braces: {year} {year2} {month} {month1} {day} {hour} {minute} {second} {counter} {counter:N} {folder} {text} {name} {camera}</source>
        <translation>Text mit Elementen in geschweiften Klammern: {year} {year2} {month} {month1} {day} {hour} {minute} {second} {counter} {counter:N} {folder} {text} {name} {camera}</translation>
    </message>
    <message>
        <source>Template:</source>
        <translation>Vorlage:</translation>
    </message>
    <message>
        <source>Text %1:</source>
        <translation>Text %1:</translation>
    </message>
    <message>
        <source>Old name</source>
        <translation>Alter Name</translation>
    </message>
    <message>
        <source>New name</source>
        <translation>Neuer Name</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Every file would get the same name: add a date element, the counter or the old name.</source>
        <translation>Jede Datei bekäme denselben Namen: Fügen Sie ein Datumselement, den Zähler oder den alten Namen hinzu.</translation>
    </message>
    <message>
        <source>Names may meet: a taken name gets a number.</source>
        <translation>Namen können zusammentreffen: Ein vergebener Name erhält eine Nummer.</translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) will be renamed.</source>
        <translation>
            <numerusform>%n Datei wird umbenannt.</numerusform>
            <numerusform>%n Dateien werden umbenannt.</numerusform>
        </translation>
    </message>
    <message>
        <source>Nothing was renamed: %1</source>
        <translation>Nichts wurde umbenannt: %1</translation>
    </message>
</context>
<context>
    <name>orv::SaveErrorsDialog</name>
    <message>
        <source>Save Problems</source>
        <translation>Probleme beim Speichern</translation>
    </message>
    <message>
        <source>&lt;b&gt;Some files could not be saved.&lt;/b&gt;&lt;p&gt;All other files were saved. The files listed keep their changes, so a later save can try again. This report is also kept in the error log.&lt;/p&gt;</source>
        <translation>&lt;b&gt;Einige Dateien konnten nicht gespeichert werden.&lt;/b&gt;&lt;p&gt;Alle anderen Dateien wurden gespeichert. Die aufgeführten Dateien behalten ihre Änderungen, sodass ein späteres Speichern es erneut versuchen kann. Dieser Bericht steht auch im Fehlerprotokoll.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Show Error Log</source>
        <translation>Fehlerprotokoll zeigen</translation>
    </message>
</context>
<context>
    <name>orv::SaveProgressSheet</name>
    <message>
        <source>Saving</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Each file is written in place and kept whole: a file holds all of its changes or none.</source>
        <translation>Jede Datei wird an Ort und Stelle geschrieben und bleibt unversehrt: Sie enthält alle ihre Änderungen oder keine.</translation>
    </message>
    <message>
        <source>Saving dates…</source>
        <translation>Daten werden gespeichert …</translation>
    </message>
    <message>
        <source>Keeping XMP in step…</source>
        <translation>XMP wird abgeglichen …</translation>
    </message>
    <message>
        <source>Waiting for another save to finish…</source>
        <translation>Warten, bis ein anderes Speichern endet …</translation>
    </message>
    <message>
        <source>Checking files…</source>
        <translation>Dateien werden geprüft …</translation>
    </message>
</context>
<context>
    <name>orv::SaveSession</name>
    <message>
        <source>Add date tags?</source>
        <translation>Datums-Tags hinzufügen?</translation>
    </message>
    <message>
        <source>Some files have no date tags: their date is the file&apos;s creation date, which cannot be changed on this system. Add date tags that hold the new date (through exiftool), so that the next import reads it? Without them only the files&apos; modification date is set, and the next import reads the new date only where it is earlier than the file&apos;s creation.</source>
        <translation>Einige Dateien haben keine Datums-Tags: Ihr Datum ist das Erstellungsdatum der Datei, das sich auf diesem System nicht ändern lässt. Datums-Tags mit dem neuen Datum hinzufügen (über exiftool), damit der nächste Import es liest? Ohne sie wird nur das Änderungsdatum der Dateien gesetzt, und der nächste Import liest das neue Datum nur, wo es vor der Erstellung der Datei liegt.</translation>
    </message>
</context>
<context>
    <name>orv::StateKeeper</name>
    <message>
        <source>cannot remove %1</source>
        <translation>%1 lässt sich nicht entfernen</translation>
    </message>
</context>
<context>
    <name>orv::StateSession</name>
    <message numerus="yes">
        <source>… and %n more</source>
        <translation>
            <numerusform>… und %n weitere</numerusform>
            <numerusform>… und %n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>Working Set Not Kept</source>
        <translation>Arbeitsmenge nicht aufbewahrt</translation>
    </message>
    <message>
        <source>The working set could not be kept for the next start; the one kept before stays.
%1</source>
        <translation>Die Arbeitsmenge konnte nicht für den nächsten Start aufbewahrt werden; die zuvor aufbewahrte bleibt.
%1</translation>
    </message>
    <message>
        <source>Open Kept State…</source>
        <translation>Aufbewahrten Stand öffnen …</translation>
    </message>
    <message>
        <source>Keep Working Set As…</source>
        <translation>Arbeitsmenge aufbewahren unter …</translation>
    </message>
    <message>
        <source>Restore Your Work</source>
        <translation>Arbeit wiederherstellen</translation>
    </message>
    <message>
        <source>Do you want to continue with the work of your last session?</source>
        <translation>Möchten Sie mit der Arbeit Ihrer letzten Sitzung fortfahren?</translation>
    </message>
    <message>
        <source>Its folders come back with every change that was not saved yet.</source>
        <translation>Ihre Ordner kommen mit allen noch nicht gespeicherten Änderungen zurück.</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Wiederherstellen</translation>
    </message>
    <message>
        <source>Start Empty</source>
        <translation>Leer beginnen</translation>
    </message>
    <message>
        <source>The kept work could not be moved aside: %1</source>
        <translation>Die aufbewahrte Arbeit konnte nicht beiseitegelegt werden: %1</translation>
    </message>
    <message>
        <source>The state could not be opened: %1</source>
        <translation>Der Stand ließ sich nicht öffnen: %1</translation>
    </message>
    <message>
        <source>It was kept as %1.</source>
        <translation>Er wurde als %1 aufbewahrt.</translation>
    </message>
    <message>
        <source>State Not Opened</source>
        <translation>Stand nicht geöffnet</translation>
    </message>
    <message>
        <source>State Restored</source>
        <translation>Stand wiederhergestellt</translation>
    </message>
    <message>
        <source>Some folders or files are not as the state kept them. Files that changed or went away are marked and are not saved.</source>
        <translation>Einige Ordner oder Dateien sind nicht mehr so, wie der Stand sie aufbewahrt hat. Geänderte oder verschwundene Dateien sind markiert und werden nicht gespeichert.</translation>
    </message>
    <message>
        <source>Open Kept State</source>
        <translation>Aufbewahrten Stand öffnen</translation>
    </message>
    <message>
        <source>Keep Working Set In</source>
        <translation>Arbeitsmenge aufbewahren in</translation>
    </message>
    <message>
        <source>State Tray</source>
        <translation>Ablage</translation>
    </message>
    <message>
        <source>States opened from the tray before the program ended could not all be put back into the tray:
%1</source>
        <translation>Stände, die vor dem Programmende aus der Ablage geöffnet waren, konnten nicht alle in die Ablage zurückgelegt werden:
%1</translation>
    </message>
    <message>
        <source>The program ended while states from the tray were open. They are back in the tray, under “States to Verify”.</source>
        <translation>Das Programm endete, während Stände aus der Ablage geöffnet waren. Sie liegen wieder in der Ablage, unter „Zu prüfende Stände“.</translation>
    </message>
    <message>
        <source>Quit and Keep Working Set</source>
        <translation>Beenden und Arbeitsmenge aufbewahren</translation>
    </message>
    <message>
        <source>Quit Without Keeping Working Set</source>
        <translation>Beenden ohne Aufbewahren der Arbeitsmenge</translation>
    </message>
    <message>
        <source>The thumbnails were not kept: %1
</source>
        <translation>Die Miniaturen wurden nicht aufbewahrt: %1
</translation>
    </message>
    <message>
        <source>Working Set</source>
        <translation>Arbeitsmenge</translation>
    </message>
    <message>
        <source>The working set kept for the next start could not be removed: %1</source>
        <translation>Die für den nächsten Start aufbewahrte Arbeitsmenge konnte nicht entfernt werden: %1</translation>
    </message>
    <message>
        <source>The states opened from the tray could not be moved to the trash; they come back into the tray at the next start.
%1</source>
        <translation>Die aus der Ablage geöffneten Stände konnten nicht in den Papierkorb gelegt werden; sie kommen beim nächsten Start zurück in die Ablage.
%1</translation>
    </message>
    <message>
        <source>There are no folders to keep.</source>
        <translation>Es gibt keine Ordner zum Aufbewahren.</translation>
    </message>
    <message>
        <source>The working set can be kept once the import or save has ended.</source>
        <translation>Die Arbeitsmenge kann aufbewahrt werden, sobald der Import oder das Speichern beendet ist.</translation>
    </message>
</context>
<context>
    <name>orv::StateTrayWindow</name>
    <message>
        <source>States to Verify</source>
        <translation>Zu prüfende Stände</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Rename…</source>
        <translation>Umbenennen …</translation>
    </message>
    <message>
        <source>Note…</source>
        <translation>Notiz …</translation>
    </message>
    <message>
        <source>Move to Trash</source>
        <translation>In den Papierkorb legen</translation>
    </message>
    <message>
        <source>State Tray</source>
        <translation>Ablage</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>First Date</source>
        <translation>Erstes Datum</translation>
    </message>
    <message>
        <source>Last Date</source>
        <translation>Letztes Datum</translation>
    </message>
    <message>
        <source>Kept On</source>
        <translation>Aufbewahrt am</translation>
    </message>
    <message>
        <source>Ascending</source>
        <translation>Aufsteigend</translation>
    </message>
    <message>
        <source>Keep Working Set</source>
        <translation>Arbeitsmenge aufbewahren</translation>
    </message>
    <message>
        <source>Keeps the folders and every unsaved change here, and empties the window</source>
        <translation>Bewahrt die Ordner und jede ungespeicherte Änderung hier auf und leert das Fenster</translation>
    </message>
    <message>
        <source>New Folder…</source>
        <translation>Neuer Ordner …</translation>
    </message>
    <message>
        <source>Sort by</source>
        <translation>Sortieren nach</translation>
    </message>
    <message>
        <source>State Tray / %1</source>
        <translation>Ablage / %1</translation>
    </message>
    <message numerus="yes">
        <source>%n folder(s)</source>
        <translation>
            <numerusform>%n Ordner</numerusform>
            <numerusform>%n Ordner</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n photo(s)</source>
        <translation>
            <numerusform>%n Foto</numerusform>
            <numerusform>%n Fotos</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n movie(s)</source>
        <translation>
            <numerusform>%n Film</numerusform>
            <numerusform>%n Filme</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n unsaved</source>
        <translation>
            <numerusform>%n ungespeichert</numerusform>
            <numerusform>%n ungespeichert</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n keeper(s)</source>
        <translation>
            <numerusform>%n behalten</numerusform>
            <numerusform>%n behalten</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 – %2</source>
        <translation>%1 – %2</translation>
    </message>
    <message>
        <source>Brought back after the program ended unexpectedly</source>
        <translation>Nach einem unerwarteten Programmende zurückgeholt</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Rename State</source>
        <translation>Stand umbenennen</translation>
    </message>
    <message>
        <source>Title of the state:</source>
        <translation>Titel des Stands:</translation>
    </message>
    <message>
        <source>State Not Renamed</source>
        <translation>Stand nicht umbenannt</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Notiz</translation>
    </message>
    <message>
        <source>Note on the state:</source>
        <translation>Notiz zum Stand:</translation>
    </message>
    <message>
        <source>Note Not Kept</source>
        <translation>Notiz nicht aufbewahrt</translation>
    </message>
    <message>
        <source>Not Moved to the Trash</source>
        <translation>Nicht in den Papierkorb gelegt</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message>
        <source>Name of the folder:</source>
        <translation>Name des Ordners:</translation>
    </message>
    <message>
        <source>A folder named “%1” cannot be made here.</source>
        <translation>Ein Ordner namens „%1“ kann hier nicht angelegt werden.</translation>
    </message>
</context>
<context>
    <name>orv::TemporaryImportOptionsDialog</name>
    <message>
        <source>Include subfolders (one level down)</source>
        <translation>Unterordner einbeziehen (eine Ebene tief)</translation>
    </message>
    <message>
        <source>Include subfolders (up to %1 levels down)</source>
        <translation>Unterordner einbeziehen (bis zu %1 Ebenen tief)</translation>
    </message>
    <message>
        <source>Group RAW+JPEG pairs and Live Photos</source>
        <translation>RAW+JPEG-Paare und Live Photos gruppieren</translation>
    </message>
    <message>
        <source>Correct the files’ own dates where they are off</source>
        <translation>Die eigenen Daten der Dateien korrigieren, wo sie abweichen</translation>
    </message>
    <message>
        <source>Give all files dates in a row, in name order</source>
        <translation>Allen Dateien Daten in einer Reihe geben, nach Namen geordnet</translation>
    </message>
    <message>
        <source>Filter by file type</source>
        <translation>Nach Dateityp filtern</translation>
    </message>
    <message>
        <source>Show these options at every import</source>
        <translation>Diese Optionen bei jedem Import zeigen</translation>
    </message>
    <message>
        <source>Import Options</source>
        <translation>Importoptionen</translation>
    </message>
    <message>
        <source>Import as:</source>
        <translation>Importieren als:</translation>
    </message>
    <message>
        <source>Dates:</source>
        <translation>Daten:</translation>
    </message>
    <message>
        <source>Files:</source>
        <translation>Dateien:</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Import</translation>
    </message>
    <message>
        <source>Otherwise hold the Alt key while dropping or opening to see them</source>
        <translation>Sonst beim Ablegen oder Öffnen die Alt-Taste halten, um sie zu sehen</translation>
    </message>
    <message>
        <source>Single files in this drop are left out: importing single files is off.</source>
        <translation>Einzelne Dateien dieser Ablage werden ausgelassen: Der Import einzelner Dateien ist aus.</translation>
    </message>
    <message>
        <source>Normal: dates, places and previews</source>
        <translation>Normal: Daten, Orte und Vorschauen</translation>
    </message>
    <message>
        <source>Express: dates and places now, previews later</source>
        <translation>Express: Daten und Orte jetzt, Vorschauen später</translation>
    </message>
    <message>
        <source>Slideshow only: show the files, read nothing from them</source>
        <translation>Nur Diashow: Dateien zeigen, nichts aus ihnen lesen</translation>
    </message>
    <message>
        <source>Move a folder’s items together</source>
        <translation>Die Objekte eines Ordners gemeinsam verschieben</translation>
    </message>
    <message>
        <source>Move each item on its own</source>
        <translation>Jedes Objekt einzeln verschieben</translation>
    </message>
    <message>
        <source>Keep only</source>
        <translation>Nur behalten</translation>
    </message>
    <message>
        <source>Leave out</source>
        <translation>Auslassen</translation>
    </message>
    <message>
        <source>.mov, .mp4</source>
        <translation>.mov, .mp4</translation>
    </message>
    <message>
        <source>XMP and AAE sidecars always come along with their files.</source>
        <translation>XMP- und AAE-Filialdateien kommen immer mit ihren Dateien.</translation>
    </message>
    <message>
        <source>⚠ Slideshow-only folders keep no dates: the date sequence leaves their files alone.</source>
        <translation>⚠ Nur-Diashow-Ordner führen keine Daten: Die Datumsreihe lässt ihre Dateien unberührt.</translation>
    </message>
</context>
<context>
    <name>orv::TimelineDragHandler</name>
    <message>
        <source>%1 s</source>
        <translation>%1 Sek.</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 Min.</translation>
    </message>
    <message>
        <source>%1 h</source>
        <translation>%1 Std.</translation>
    </message>
    <message>
        <source>%1 d</source>
        <translation>%1 T</translation>
    </message>
    <message>
        <source>Left half: 1 s before %1</source>
        <translation>Linke Hälfte: 1 Sek. vor %1</translation>
    </message>
    <message>
        <source>Right half: 1 s after %1</source>
        <translation>Rechte Hälfte: 1 Sek. nach %1</translation>
    </message>
    <message>
        <source>Gap: halfway between %1 and %2</source>
        <translation>Lücke: auf halbem Weg zwischen %1 und %2</translation>
    </message>
    <message>
        <source>%1 before the first item (Up, Down: other gaps)</source>
        <translation>%1 vor dem ersten Objekt (Auf, Ab: andere Lücken)</translation>
    </message>
    <message>
        <source>%1 after the last item (Up, Down: other gaps)</source>
        <translation>%1 nach dem letzten Objekt (Auf, Ab: andere Lücken)</translation>
    </message>
    <message numerus="yes">
        <source>%n items spread evenly into the gap</source>
        <translation>
            <numerusform>%n Objekt gleichmäßig in die Lücke verteilt</numerusform>
            <numerusform>%n Objekte gleichmäßig in die Lücke verteilt</numerusform>
        </translation>
    </message>
    <message>
        <source>
(a folder cannot fall between its own items)</source>
        <translation>
(ein Ordner kann nicht zwischen seine eigenen Objekte fallen)</translation>
    </message>
    <message>
        <source>Dates are locked while the save runs</source>
        <translation>Während des Speicherns sind die Daten gesperrt</translation>
    </message>
    <message>
        <source>This folder is not raised: drag a raised item onto it, or double-click to raise it</source>
        <translation>Dieser Ordner ist nicht hervorgehoben: Ziehen Sie ein hervorgehobenes Objekt darauf oder heben Sie ihn per Doppelklick hervor</translation>
    </message>
    <message>
        <source>Beyond the end: %1 from the nearest item</source>
        <translation>Hinter dem Ende: %1 vom nächsten Objekt</translation>
    </message>
    <message>
        <source>Move the selection to this strip</source>
        <translation>Auswahl auf diesen Streifen bewegen</translation>
    </message>
    <message>
        <source>Select these items on this strip</source>
        <translation>Diese Objekte auf diesem Streifen auswählen</translation>
    </message>
    <message>
        <source>From %1</source>
        <translation>Von %1</translation>
    </message>
    <message>
        <source>%1
Folder offset %2</source>
        <translation>%1
Ordnerversatz %2</translation>
    </message>
    <message>
        <source>%1
Moves by %2</source>
        <translation>%1
Verschiebt sich um %2</translation>
    </message>
</context>
<context>
    <name>orv::TimelinePane</name>
    <message>
        <source>Fi&amp;lter</source>
        <translation>Fi&amp;lter</translation>
    </message>
    <message>
        <source>&amp;Strips</source>
        <translation>&amp;Streifen</translation>
    </message>
    <message>
        <source>Larger Thumbnails</source>
        <translation>Größere Miniaturen</translation>
    </message>
    <message>
        <source>Smaller Thumbnails</source>
        <translation>Kleinere Miniaturen</translation>
    </message>
    <message>
        <source>Add Mirror Strip</source>
        <translation>Spiegelstreifen hinzufügen</translation>
    </message>
    <message>
        <source>Add Shelf Strip</source>
        <translation>Ablagestreifen hinzufügen</translation>
    </message>
    <message>
        <source>Remove Last Strip</source>
        <translation>Letzten Streifen entfernen</translation>
    </message>
    <message>
        <source>No Filter</source>
        <translation>Kein Filter</translation>
    </message>
</context>
<context>
    <name>orv::TrackListView</name>
    <message>
        <source>Link</source>
        <translation>Verknüpfen</translation>
    </message>
    <message>
        <source>Unlink</source>
        <translation>Verknüpfung lösen</translation>
    </message>
    <message>
        <source>Use Track&apos;s Zone</source>
        <translation>Zone des Tracks verwenden</translation>
    </message>
    <message>
        <source>Track</source>
        <translation>Track</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Beginn</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Points</source>
        <translation>Punkte</translation>
    </message>
    <message>
        <source>Placed</source>
        <translation>Verortet</translation>
    </message>
    <message>
        <source>Folders</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Zone</source>
        <translation>Zone</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Link the chosen tracks to the folders on show</source>
        <translation>Die gewählten Tracks mit den gezeigten Ordnern verknüpfen</translation>
    </message>
    <message>
        <source>The folders on show let go of the chosen tracks</source>
        <translation>Die gezeigten Ordner lösen sich von den gewählten Tracks</translation>
    </message>
    <message>
        <source>Open Items</source>
        <translation>Objekte öffnen</translation>
    </message>
    <message>
        <source>The chosen items take their places from their folders&apos; tracks, a place of their own giving way</source>
        <translation>Die gewählten Objekte nehmen ihre Orte aus den Tracks ihrer Ordner; ein eigener Ort tritt zurück</translation>
    </message>
    <message>
        <source>Close Items</source>
        <translation>Objekte schließen</translation>
    </message>
    <message>
        <source>The chosen items no longer take places from tracks and get back what they had</source>
        <translation>Die gewählten Objekte nehmen keine Orte mehr aus Tracks und bekommen zurück, was sie hatten</translation>
    </message>
    <message>
        <source>The folders on show whose camera wrote no time zone read their dates in the zone where the chosen track was recorded</source>
        <translation>Die gezeigten Ordner, deren Kamera keine Zeitzone schrieb, lesen ihre Daten in der Zone, in der der gewählte Track aufgezeichnet wurde</translation>
    </message>
    <message>
        <source>usable</source>
        <translation>nutzbar</translation>
    </message>
</context>
<context>
    <name>orv::TrashActions</name>
    <message>
        <source>Move to Trash</source>
        <translation>In den Papierkorb legen</translation>
    </message>
    <message>
        <source>Move to Trash: these files stayed where they are:</source>
        <translation>In den Papierkorb legen: Diese Dateien blieben, wo sie sind:</translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) stayed where they are.</source>
        <translation>
            <numerusform>%n Datei blieb, wo sie ist.</numerusform>
            <numerusform>%n Dateien blieben, wo sie sind.</numerusform>
        </translation>
    </message>
    <message>
        <source>No Trash</source>
        <translation>Kein Papierkorb</translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) lie on a volume without a trash that can be written. Delete them for good? This cannot be undone.</source>
        <translation>
            <numerusform>%n Datei liegt auf einem Datenträger ohne beschreibbaren Papierkorb. Endgültig löschen? Das lässt sich nicht widerrufen.</numerusform>
            <numerusform>%n Dateien liegen auf einem Datenträger ohne beschreibbaren Papierkorb. Endgültig löschen? Das lässt sich nicht widerrufen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
</context>
<context>
    <name>orv::ViewingActions</name>
    <message>
        <source>Rating Grid</source>
        <translation>Bewertungsraster</translation>
    </message>
    <message>
        <source>Full Screen</source>
        <translation>Vollbild</translation>
    </message>
    <message>
        <source>Slideshow</source>
        <translation>Diashow</translation>
    </message>
    <message>
        <source>Keeper</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>Neutral</source>
        <translation>Neutral</translation>
    </message>
    <message>
        <source>Reject</source>
        <translation>Verworfen</translation>
    </message>
    <message>
        <source>&amp;Rating</source>
        <translation>&amp;Bewertung</translation>
    </message>
</context>
<context>
    <name>orv::WorkingSetActions</name>
    <message>
        <source>Remove from Working Set</source>
        <translation>Aus der Arbeitsmenge entfernen</translation>
    </message>
    <message>
        <source>Remove Folder from Working Set</source>
        <translation>Ordner aus der Arbeitsmenge entfernen</translation>
    </message>
    <message numerus="yes">
        <source>%n folder(s) hold changes that are not saved. Removing them discards the changes; this cannot be undone.</source>
        <translation>
            <numerusform>%n Ordner enthält ungespeicherte Änderungen. Beim Entfernen gehen sie verloren; das lässt sich nicht widerrufen.</numerusform>
            <numerusform>%n Ordner enthalten ungespeicherte Änderungen. Beim Entfernen gehen sie verloren; das lässt sich nicht widerrufen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Folders can be removed once the running import or save has ended.</source>
        <translation>Ordner lassen sich entfernen, sobald der laufende Import oder das Speichern beendet ist.</translation>
    </message>
</context>
<context>
    <name>orv::ZonePlaceSearchField</name>
    <message>
        <source>Loading places…</source>
        <translation>Orte werden geladen …</translation>
    </message>
    <message>
        <source>Find a zone by city, country or zone name</source>
        <translation>Zone nach Stadt, Land oder Zonenname finden</translation>
    </message>
</context>
<context>
    <name>resetAllInFolderMode</name>
    <message>
        <source>Reset Folder Offset</source>
        <translation>Ordnerversatz zurücksetzen</translation>
    </message>
</context>
<context>
    <name>resetAllInSingleMode</name>
    <message>
        <source>Reset Dates</source>
        <translation>Daten zurücksetzen</translation>
    </message>
</context>
<context>
    <name>timeLabels_1Ago</name>
    <message>
        <source>Yesterday</source>
        <translation>Gestern</translation>
    </message>
</context>
<context>
    <name>timeLabels_2Ago</name>
    <message>
        <source>2 days ago</source>
        <translation>Vor 2 Tagen</translation>
    </message>
</context>
<context>
    <name>timeLabels_in1</name>
    <message>
        <source>Tomorrow</source>
        <translation>Morgen</translation>
    </message>
</context>
<context>
    <name>timeLabels_in2</name>
    <message>
        <source>In 2 days</source>
        <translation>In 2 Tagen</translation>
    </message>
</context>
<context>
    <name>timeLabels_today</name>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
</context>
<context>
    <name>tzc_ui_undoRedo_full</name>
    <message>
        <source>Time Zone Correction</source>
        <translation>Zeitzonenkorrektur</translation>
    </message>
</context>
<context>
    <name>undoDateChangeText</name>
    <message>
        <source>Date Change</source>
        <translation>Datumsänderung</translation>
    </message>
</context>
</TS>
