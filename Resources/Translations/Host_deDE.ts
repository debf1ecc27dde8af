<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>BookPanel</name>
    <message>
        <source>%1 (missing)</source>
        <translation>%1 (fehlt)</translation>
    </message>
    <message>
        <source>Book menu</source>
        <translation>Buchmenü</translation>
    </message>
    <message>
        <source>&amp;New Book...</source>
        <translation>&amp;Neues Buch...</translation>
    </message>
    <message>
        <source>&amp;Open Book...</source>
        <translation>Buch ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>&amp;Add Documents...</source>
        <translation>Dokumente &amp;hinzufügen...</translation>
    </message>
    <message>
        <source>&amp;Remove Document</source>
        <translation>Dokument &amp;entfernen</translation>
    </message>
    <message>
        <source>Move &amp;Up</source>
        <translation>Nach &amp;oben</translation>
    </message>
    <message>
        <source>Move &amp;Down</source>
        <translation>Nach &amp;unten</translation>
    </message>
    <message>
        <source>&amp;Number Pages On</source>
        <translation>Seiten &amp;durchzählen</translation>
    </message>
    <message>
        <source>Page numbers go on from one document to the next.</source>
        <translation>Die Seitenzahlen laufen von einem Dokument zum nächsten weiter.</translation>
    </message>
    <message>
        <source>&amp;Save Book</source>
        <translation>Buch &amp;speichern</translation>
    </message>
    <message>
        <source>&amp;Close Book</source>
        <translation>Buch s&amp;chließen</translation>
    </message>
    <message>
        <source>This book is empty. Its menu adds documents.</source>
        <translation>Dieses Buch ist leer. Über sein Menü fügen Sie Dokumente hinzu.</translation>
    </message>
    <message>
        <source>No book is open.</source>
        <translation>Kein Buch ist geöffnet.</translation>
    </message>
</context>
<context>
    <name>DocumentView</name>
    <message>
        <source>none</source>
        <translation>keiner</translation>
    </message>
    <message>
        <source>%1 %2 (top, bottom, inside, outside)</source>
        <translation>%1 %2 (oben, unten, innen, außen)</translation>
    </message>
    <message>
        <source>, left</source>
        <translation>, links</translation>
    </message>
    <message>
        <source>, middle</source>
        <translation>, Mitte</translation>
    </message>
    <message>
        <source>, right</source>
        <translation>, rechts</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>, facing</source>
        <translation>, gegenüberliegend</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Bleed</source>
        <translation>Anschnitt</translation>
    </message>
    <message>
        <source>Colours</source>
        <translation>Farben</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Fonts</source>
        <translation>Schriften</translation>
    </message>
    <message>
        <source>Links</source>
        <translation>Verknüpfungen</translation>
    </message>
    <message>
        <source>Open a document with Ctrl+O.</source>
        <translation>Öffnen Sie ein Dokument mit Strg+O.</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>Page %1%2 (%3)</source>
        <translation>Seite %1%2 (%3)</translation>
    </message>
    <message>
        <source>Drawing...</source>
        <translation>Die Seite wird gezeichnet...</translation>
    </message>
    <message>
        <source>This page can&apos;t be shown.</source>
        <translation>Diese Seite kann nicht gezeigt werden.</translation>
    </message>
</context>
<context>
    <name>FileQuestions</name>
    <message>
        <source>Scribus documents</source>
        <translation>Scribus-Dokumente</translation>
    </message>
    <message>
        <source>Books</source>
        <translation>Bücher</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>Speichern unter</translation>
    </message>
    <message>
        <source>&quot;%1&quot; already exists. Replace it?</source>
        <translation>„%1“ gibt es schon. Ersetzen?</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Scribus documents and books</source>
        <translation>Scribus-Dokumente und Bücher</translation>
    </message>
    <message>
        <source>New from Template</source>
        <translation>Neu aus Vorlage</translation>
    </message>
    <message>
        <source>Open Book</source>
        <translation>Buch öffnen</translation>
    </message>
    <message>
        <source>New Book</source>
        <translation>Neues Buch</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Save &quot;%1&quot; before closing?</source>
        <translation>„%1“ vor dem Schließen speichern?</translation>
    </message>
    <message>
        <source>If you don&apos;t save, it will be lost.</source>
        <translation>Ohne Speichern geht es verloren.</translation>
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
    <name>HostWindow</name>
    <message>
        <source>Documents</source>
        <translation>Dokumente</translation>
    </message>
    <message>
        <source>Book</source>
        <translation>Buch</translation>
    </message>
    <message>
        <source>Last Export</source>
        <translation>Letzter Export</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;New from Template...</source>
        <translation>&amp;Neu aus Vorlage...</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>Ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Speichern &amp;unter...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;About the Hopbox Plug-in</source>
        <translation>Ü&amp;ber das Hopbox-Plug-in</translation>
    </message>
    <message>
        <source>Opening %1...</source>
        <translation>%1 wird geöffnet...</translation>
    </message>
    <message>
        <source>%1 (not saved)</source>
        <translation>%1 (nicht gespeichert)</translation>
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
    <name>NameList</name>
    <message>
        <source>%1 (missing)</source>
        <translation>%1 (fehlt)</translation>
    </message>
    <message>
        <source>, %1 missing</source>
        <translation>, %1 fehlen</translation>
    </message>
</context>
<context>
    <name>PlugInModule</name>
    <message>
        <source>it has no entry &quot;%1&quot;.</source>
        <translation>Es hat keinen Einsprungpunkt „%1“.</translation>
    </message>
    <message>
        <source>The plug-in &quot;%1&quot; can&apos;t be used: %2</source>
        <translation>Das Plug-in „%1“ kann nicht benutzt werden: %2</translation>
    </message>
</context>
<context>
    <name>ReportPanel</name>
    <message>
        <source>Setting</source>
        <translation>Einstellung</translation>
    </message>
    <message>
        <source>Asked for</source>
        <translation>Verlangt</translation>
    </message>
    <message>
        <source>Answer</source>
        <translation>Antwort</translation>
    </message>
    <message>
        <source>What was done</source>
        <translation>Was getan wurde</translation>
    </message>
    <message>
        <source>All settings of the job options were honoured.</source>
        <translation>Alle Einstellungen der Job-Optionen wurden befolgt.</translation>
    </message>
    <message>
        <source>Settings that were not honoured exactly: %1</source>
        <translation>Nicht genau befolgte Einstellungen: %1</translation>
    </message>
    <message>
        <source>Exported to %1</source>
        <translation>Exportiert nach %1</translation>
    </message>
    <message>
        <source>The export failed: %1</source>
        <translation>Der Export ist fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>approximated</source>
        <translation>angenähert</translation>
    </message>
    <message>
        <source>not possible</source>
        <translation>nicht möglich</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
</context>
<context>
    <name>WindowFrontend</name>
    <message>
        <source>Export PDF</source>
        <translation>PDF exportieren</translation>
    </message>
    <message>
        <source>Export Book to PDF</source>
        <translation>Buch als PDF exportieren</translation>
    </message>
    <message>
        <source>Package</source>
        <translation>Paket</translation>
    </message>
    <message>
        <source>Package Book</source>
        <translation>Buch-Paket</translation>
    </message>
    <message>
        <source>Check Fonts</source>
        <translation>Schriften prüfen</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
    <message>
        <source>The PDF of &quot;%1&quot; will not be as expected.</source>
        <translation>Das PDF von „%1“ wird nicht wie erwartet.</translation>
    </message>
    <message>
        <source>&amp;Export Anyway</source>
        <translation>&amp;Trotzdem exportieren</translation>
    </message>
</context>
</TS>
