<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>GCPTAbstractAction</name>
    <message>
        <source>Export to Hopbox...</source>
        <translation>An Hopbox exportieren...</translation>
    </message>
    <message>
        <source>Export to Hopbox</source>
        <translation>An Hopbox exportieren</translation>
    </message>
</context>
<context>
    <name>GCSPUSaveAsStamplexPDFDialog</name>
    <message>
        <source>Export to Hopbox</source>
        <translation>An Hopbox exportieren</translation>
    </message>
    <message>
        <source>&amp;PDF Settings:</source>
        <translation>&amp;PDF-Einstellungen:</translation>
    </message>
    <message>
        <source>Include &amp;File Package</source>
        <translation>&amp;Dateipaket einschließen</translation>
    </message>
    <message>
        <source>Check this option to deliver an InDesign file Package.</source>
        <translation>Aktivieren Sie diese Option, um ein InDesign-Dateipaket mitzuliefern.</translation>
    </message>
    <message>
        <source>Pages:</source>
        <translation>Seiten:</translation>
    </message>
    <message>
        <source>&amp;All</source>
        <translation>&amp;Alle</translation>
    </message>
    <message>
        <source>&amp;Range:</source>
        <translation>&amp;Bereich:</translation>
    </message>
    <message>
        <source>&amp;Options</source>
        <translation>&amp;Optionen</translation>
    </message>
    <message>
        <source>Hold down the &quot;Alt&quot; key to remove a Hopbox from the list.</source>
        <translation>Halten Sie die Taste „Alt“ gedrückt, um eine Hopbox aus der Liste zu entfernen.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>No PDF Settings found</source>
        <translation>Keine PDF-Einstellungen gefunden</translation>
    </message>
    <message>
        <source>Export as Stamplex PDF Error</source>
        <translation>Fehler beim Export als Stamplex-PDF</translation>
    </message>
    <message>
        <source>PDF settings are missing for %1. Launch the Hopbox manually and try again.</source>
        <translation>Für %1 fehlen die PDF-Einstellungen. Starten Sie die Hopbox von Hand und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Export as Stamplex PDF error</source>
        <translation>Fehler beim Export als Stamplex-PDF</translation>
    </message>
    <message>
        <source>Unable to remove selected PDF setting.</source>
        <translation>Die ausgewählte PDF-Einstellung konnte nicht entfernt werden.</translation>
    </message>
</context>
<context>
    <name>GCUSMessageBox</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>GCUSPDFSettingsAdjWdt</name>
    <message>
        <source>All Printer&apos;s &amp;Marks</source>
        <translation>Alle Druckermar&amp;ken</translation>
    </message>
    <message>
        <source>&amp;Crop</source>
        <translation>&amp;Schnittmarken</translation>
    </message>
    <message>
        <source>&amp;Bleed</source>
        <translation>A&amp;nschnittmarken</translation>
    </message>
    <message>
        <source>Re&amp;gistration</source>
        <translation>Passer&amp;marken</translation>
    </message>
    <message>
        <source>Co&amp;lor Bars</source>
        <translation>&amp;Farbkontrollstreifen</translation>
    </message>
    <message>
        <source>Page &amp;Information</source>
        <translation>Seiten&amp;informationen</translation>
    </message>
    <message>
        <source>&amp;Weight:</source>
        <translation>S&amp;tärke:</translation>
    </message>
    <message>
        <source>%1 pt</source>
        <translation>%1 pt</translation>
    </message>
    <message>
        <source>Offse&amp;t:</source>
        <translation>&amp;Versatz:</translation>
    </message>
    <message>
        <source>Bleed:</source>
        <translation>Anschnitt:</translation>
    </message>
    <message>
        <source>&amp;Use Document Bleed Settings</source>
        <translation>Anschnitteinstell&amp;ungen des Dokuments verwenden</translation>
    </message>
    <message>
        <source>Top:</source>
        <translation>Oben:</translation>
    </message>
    <message>
        <source>Bottom:</source>
        <translation>Unten:</translation>
    </message>
    <message>
        <source>Inside:</source>
        <translation>Innen:</translation>
    </message>
    <message>
        <source>Outside:</source>
        <translation>Außen:</translation>
    </message>
    <message>
        <source>Bleed at the top</source>
        <translation>Anschnitt oben</translation>
    </message>
    <message>
        <source>Bleed at the bottom</source>
        <translation>Anschnitt unten</translation>
    </message>
    <message>
        <source>Bleed on the inside</source>
        <translation>Anschnitt innen</translation>
    </message>
    <message>
        <source>Bleed on the outside</source>
        <translation>Anschnitt außen</translation>
    </message>
    <message>
        <source>Make all settings the same</source>
        <translation>Alle Einstellungen gleichsetzen</translation>
    </message>
    <message>
        <source>Include &amp;Slug Area (For Bleed)</source>
        <translation>Infobereich &amp;einschließen (für Anschnitt)</translation>
    </message>
    <message>
        <source>Pri&amp;nt Spreads</source>
        <translation>Druckbögen aus&amp;geben</translation>
    </message>
    <message>
        <source>Offset</source>
        <translation>Versatz</translation>
    </message>
    <message>
        <source>%1: the nearest length that is possible was set, %2.</source>
        <translation>%1: Gesetzt wurde die nächste mögliche Länge, %2.</translation>
    </message>
    <message>
        <source>%1 takes a length, %2, or nothing.</source>
        <translation>%1: eine Länge, %2, oder nichts.</translation>
    </message>
    <message>
        <source>As the job options say</source>
        <translation>Wie in den Joboptionen</translation>
    </message>
    <message>
        <source>As the job options say: %1</source>
        <translation>Wie in den Joboptionen: %1</translation>
    </message>
    <message>
        <source>on</source>
        <translation>ein</translation>
    </message>
    <message>
        <source>off</source>
        <translation>aus</translation>
    </message>
</context>
<context>
    <name>GIDCSPActionComponent</name>
    <message>
        <source>Export to Hopbox 18, %1 2026 the Hopbox plug-in authors. All rights reserved.</source>
        <translation>An Hopbox exportieren 18, %1 2026 die Autoren des Hopbox-Plug-ins. Alle Rechte vorbehalten.</translation>
    </message>
    <message>
        <source>The dialog for the export is not installed.</source>
        <translation>Der Dialog für den Export ist nicht installiert.</translation>
    </message>
</context>
<context>
    <name>GQUICollapsibleFrame</name>
    <message>
        <source>Collapsed</source>
        <translation>Zugeklappt</translation>
    </message>
    <message>
        <source>Expanded</source>
        <translation>Aufgeklappt</translation>
    </message>
</context>
<context>
    <name>GQUIProgressWindow</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>GQUIUnitSpinBox</name>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>%1, in any unit: 3 mm, 0.125 in, 1p6, 9 pt</source>
        <translation>%1, in jeder Einheit: 3 mm, 0,125 in, 1p6, 9 pt</translation>
    </message>
</context>
<context>
    <name>HopboxBox</name>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
</context>
<context>
    <name>HopboxListModel</name>
    <message>
        <source>%1
Hopbox: %2</source>
        <translation>%1
Hopbox: %2</translation>
    </message>
</context>
<context>
    <name>HostFault</name>
    <message>
        <source>The host does not tell a document&apos;s missing fonts.</source>
        <translation>Die Anwendung nennt die fehlenden Schriften eines Dokuments nicht.</translation>
    </message>
    <message>
        <source>The host does not tell a book&apos;s documents.</source>
        <translation>Die Anwendung nennt die Dokumente eines Buchs nicht.</translation>
    </message>
    <message>
        <source>The host does not do what its command needs.</source>
        <translation>Die Anwendung tut nicht, was ihr Befehl braucht.</translation>
    </message>
    <message>
        <source>The host does not take a setting of its command.</source>
        <translation>Die Anwendung nimmt eine Einstellung ihres Befehls nicht an.</translation>
    </message>
    <message>
        <source>The host gave a text that can&apos;t be read.</source>
        <translation>Die Anwendung hat einen unlesbaren Text übergeben.</translation>
    </message>
    <message>
        <source>The host raised something that is no exception.</source>
        <translation>Die Anwendung hat etwas ausgelöst, das keine Ausnahme ist.</translation>
    </message>
    <message>
        <source>The host gave a count that can&apos;t be.</source>
        <translation>Die Anwendung hat eine unmögliche Anzahl angegeben.</translation>
    </message>
</context>
<context>
    <name>ModulePlugIn</name>
    <message>
        <source>The plug-in gave no reason.</source>
        <translation>Das Plug-in hat keinen Grund genannt.</translation>
    </message>
    <message>
        <source>The module does not serve version %1 of the boundary.</source>
        <translation>Das Modul bedient die Version %1 der Schnittstelle nicht.</translation>
    </message>
    <message>
        <source>The host gave the plug-in no services.</source>
        <translation>Die Anwendung hat dem Plug-in keine Dienste übergeben.</translation>
    </message>
</context>
<context>
    <name>OkButtonMode</name>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>PageRangeEdit</name>
    <message>
        <source>e.g. 1-5,8,11-13</source>
        <translation>z. B. 1-5,8,11-13</translation>
    </message>
    <message>
        <source>Page range</source>
        <translation>Seitenbereich</translation>
    </message>
    <message>
        <source>A page number is missing after &quot;%1&quot;.</source>
        <translation>Nach „%1“ fehlt eine Seitenzahl.</translation>
    </message>
    <message>
        <source>The document does not have all of these pages, or a range runs backwards.</source>
        <translation>Das Dokument hat nicht alle diese Seiten, oder ein Bereich läuft rückwärts.</translation>
    </message>
</context>
<context>
    <name>QAccessibleActionInterface</name>
    <message>
        <source>Press</source>
        <translation>Drücken</translation>
    </message>
    <message>
        <source>Check</source>
        <translation>Aktivieren</translation>
    </message>
    <message>
        <source>Uncheck</source>
        <translation>Deaktivieren</translation>
    </message>
    <message>
        <source>Toggle</source>
        <translation>Umschalten</translation>
    </message>
    <message>
        <source>SetFocus</source>
        <translation>Fokus setzen</translation>
    </message>
    <message>
        <source>ShowMenu</source>
        <translation>Menü zeigen</translation>
    </message>
    <message>
        <source>Triggers the action</source>
        <translation>Löst die Aktion aus</translation>
    </message>
    <message>
        <source>Toggles the state</source>
        <translation>Schaltet den Zustand um</translation>
    </message>
    <message>
        <source>Sets the focus</source>
        <translation>Setzt den Fokus</translation>
    </message>
</context>
<context>
    <name>QComboBox</name>
    <message>
        <source>Open the combo box selection popup</source>
        <translation>Auswahlliste öffnen</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>Wieder&amp;herstellen</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>Einf&amp;ügen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
</context>
<context>
    <name>QScrollBar</name>
    <message>
        <source>Scroll here</source>
        <translation>Hierher blättern</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>Anfang</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Page up</source>
        <translation>Eine Seite nach oben</translation>
    </message>
    <message>
        <source>Page down</source>
        <translation>Eine Seite nach unten</translation>
    </message>
    <message>
        <source>Scroll up</source>
        <translation>Nach oben blättern</translation>
    </message>
    <message>
        <source>Scroll down</source>
        <translation>Nach unten blättern</translation>
    </message>
</context>
<context>
    <name>QShortcut</name>
    <message>
        <source>Ctrl</source>
        <translation>Strg</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Alt</source>
        <translation>Alt</translation>
    </message>
</context>
<context>
    <name>QWidgetTextControl</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
</context>
<context>
    <name>RefusalText</name>
    <message>
        <source>The plug-in can&apos;t show its windows: %1</source>
        <translation>Das Plug-in kann seine Fenster nicht zeigen: %1</translation>
    </message>
    <message>
        <source>the host is a Qt program without windows.</source>
        <translation>Die Anwendung ist ein Qt-Programm ohne Fenster.</translation>
    </message>
    <message>
        <source>The plug-in is loaded already.</source>
        <translation>Das Plug-in ist schon geladen.</translation>
    </message>
    <message>
        <source>The host gave the plug-in no services.</source>
        <translation>Die Anwendung hat dem Plug-in keine Dienste übergeben.</translation>
    </message>
    <message>
        <source>The plug-in needs version %1 of the host interface; this host has version %2.</source>
        <translation>Das Plug-in braucht die Version %1 der Schnittstelle der Anwendung; diese Anwendung hat die Version %2.</translation>
    </message>
    <message>
        <source>The plug-in is not loaded.</source>
        <translation>Das Plug-in ist nicht geladen.</translation>
    </message>
    <message>
        <source>The plug-in&apos;s actions are in use already.</source>
        <translation>Die Aktionen des Plug-ins sind schon in Gebrauch.</translation>
    </message>
    <message>
        <source>Qt&apos;s platform plug-in &quot;%1&quot; is missing.</source>
        <translation>Das Plattform-Plug-in „%1“ von Qt fehlt.</translation>
    </message>
    <message>
        <source>the Wayland display can&apos;t be reached.</source>
        <translation>Die Wayland-Anzeige ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>there is no display.</source>
        <translation>Es gibt keine Anzeige.</translation>
    </message>
    <message>
        <source>the display &quot;%1&quot; can&apos;t be reached.</source>
        <translation>Die Anzeige „%1“ ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>The host&apos;s choices can&apos;t be read.</source>
        <translation>Was die Anwendung gewählt hat, ist nicht lesbar.</translation>
    </message>
    <message>
        <source>The plug-in needs version %1 of the host&apos;s table.</source>
        <translation>Das Plug-in braucht die Version %1 der Tabelle der Anwendung.</translation>
    </message>
</context>
</TS>
