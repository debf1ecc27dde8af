<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en">
<context>
    <name>BookPanel</name>
    <message>
        <source>%1 (missing)</source>
        <translation>%1 (manquant)</translation>
    </message>
    <message>
        <source>Book menu</source>
        <translation>Menu du livre</translation>
    </message>
    <message>
        <source>&amp;New Book...</source>
        <translation>&amp;Nouveau livre...</translation>
    </message>
    <message>
        <source>&amp;Open Book...</source>
        <translation>&amp;Ouvrir un livre...</translation>
    </message>
    <message>
        <source>&amp;Add Documents...</source>
        <translation>&amp;Ajouter des documents...</translation>
    </message>
    <message>
        <source>&amp;Remove Document</source>
        <translation>&amp;Retirer le document</translation>
    </message>
    <message>
        <source>Move &amp;Up</source>
        <translation>Vers le &amp;haut</translation>
    </message>
    <message>
        <source>Move &amp;Down</source>
        <translation>Vers le &amp;bas</translation>
    </message>
    <message>
        <source>&amp;Number Pages On</source>
        <translation>&amp;Numéroter les pages en continu</translation>
    </message>
    <message>
        <source>Page numbers go on from one document to the next.</source>
        <translation>Les numéros de page continuent d’un document au suivant.</translation>
    </message>
    <message>
        <source>&amp;Save Book</source>
        <translation>&amp;Enregistrer le livre</translation>
    </message>
    <message>
        <source>&amp;Close Book</source>
        <translation>&amp;Fermer le livre</translation>
    </message>
    <message>
        <source>This book is empty. Its menu adds documents.</source>
        <translation>Ce livre est vide. Son menu permet d’ajouter des documents.</translation>
    </message>
    <message>
        <source>No book is open.</source>
        <translation>Aucun livre n’est ouvert.</translation>
    </message>
</context>
<context>
    <name>DocumentView</name>
    <message>
        <source>none</source>
        <translation>aucun</translation>
    </message>
    <message>
        <source>%1 %2 (top, bottom, inside, outside)</source>
        <translation>%1 %2 (haut, bas, intérieur, extérieur)</translation>
    </message>
    <message>
        <source>, left</source>
        <translation>, gauche</translation>
    </message>
    <message>
        <source>, middle</source>
        <translation>, milieu</translation>
    </message>
    <message>
        <source>, right</source>
        <translation>, droite</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Pages</translation>
    </message>
    <message>
        <source>, facing</source>
        <translation>, en vis-à-vis</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Bleed</source>
        <translation>Fond perdu</translation>
    </message>
    <message>
        <source>Colours</source>
        <translation>Couleurs</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titre</translation>
    </message>
    <message>
        <source>Fonts</source>
        <translation>Polices</translation>
    </message>
    <message>
        <source>Links</source>
        <translation>Liens</translation>
    </message>
    <message>
        <source>Open a document with Ctrl+O.</source>
        <translation>Ouvrez un document avec Ctrl+O.</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 sur %2</translation>
    </message>
    <message>
        <source>Page %1%2 (%3)</source>
        <translation>Page %1%2 (%3)</translation>
    </message>
    <message>
        <source>Drawing...</source>
        <translation>Dessin de la page...</translation>
    </message>
    <message>
        <source>This page can&apos;t be shown.</source>
        <translation>Cette page ne peut pas être affichée.</translation>
    </message>
</context>
<context>
    <name>FileQuestions</name>
    <message>
        <source>Scribus documents</source>
        <translation>Documents Scribus</translation>
    </message>
    <message>
        <source>Books</source>
        <translation>Livres</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>Enregistrer sous</translation>
    </message>
    <message>
        <source>&quot;%1&quot; already exists. Replace it?</source>
        <translation>« %1 » existe déjà. Le remplacer ?</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>Scribus documents and books</source>
        <translation>Documents Scribus et livres</translation>
    </message>
    <message>
        <source>New from Template</source>
        <translation>Nouveau d’après un modèle</translation>
    </message>
    <message>
        <source>Open Book</source>
        <translation>Ouvrir un livre</translation>
    </message>
    <message>
        <source>New Book</source>
        <translation>Nouveau livre</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Save &quot;%1&quot; before closing?</source>
        <translation>Enregistrer « %1 » avant de fermer ?</translation>
    </message>
    <message>
        <source>If you don&apos;t save, it will be lost.</source>
        <translation>Sans enregistrement, il sera perdu.</translation>
    </message>
</context>
<context>
    <name>GQUIProgressWindow</name>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>HostWindow</name>
    <message>
        <source>Documents</source>
        <translation>Documents</translation>
    </message>
    <message>
        <source>Book</source>
        <translation>Livre</translation>
    </message>
    <message>
        <source>Last Export</source>
        <translation>Dernier export</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Fichier</translation>
    </message>
    <message>
        <source>&amp;New from Template...</source>
        <translation>&amp;Nouveau d’après un modèle...</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>&amp;Ouvrir...</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Fermer</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Enregistrer</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Enregistrer &amp;sous...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Quitter</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Aide</translation>
    </message>
    <message>
        <source>&amp;About the Hopbox Plug-in</source>
        <translation>À &amp;propos du plug-in Hopbox</translation>
    </message>
    <message>
        <source>Opening %1...</source>
        <translation>Ouverture de %1...</translation>
    </message>
    <message>
        <source>%1 (not saved)</source>
        <translation>%1 (non enregistré)</translation>
    </message>
</context>
<context>
    <name>ModulePlugIn</name>
    <message>
        <source>The plug-in gave no reason.</source>
        <translation>Le module externe n’a pas donné de raison.</translation>
    </message>
    <message>
        <source>The module does not serve version %1 of the boundary.</source>
        <translation>Le module ne sert pas la version %1 de l’interface.</translation>
    </message>
    <message>
        <source>The host gave the plug-in no services.</source>
        <translation>L’application n’a fourni aucun service au module externe.</translation>
    </message>
</context>
<context>
    <name>NameList</name>
    <message>
        <source>%1 (missing)</source>
        <translation>%1 (manquant)</translation>
    </message>
    <message>
        <source>, %1 missing</source>
        <translation>, %1 manquants</translation>
    </message>
</context>
<context>
    <name>PlugInModule</name>
    <message>
        <source>it has no entry &quot;%1&quot;.</source>
        <translation>il n’a pas de point d’entrée « %1 ».</translation>
    </message>
    <message>
        <source>The plug-in &quot;%1&quot; can&apos;t be used: %2</source>
        <translation>Le module externe « %1 » ne peut pas être utilisé : %2</translation>
    </message>
</context>
<context>
    <name>ReportPanel</name>
    <message>
        <source>Setting</source>
        <translation>Réglage</translation>
    </message>
    <message>
        <source>Asked for</source>
        <translation>Demandé</translation>
    </message>
    <message>
        <source>Answer</source>
        <translation>Réponse</translation>
    </message>
    <message>
        <source>What was done</source>
        <translation>Ce qui a été fait</translation>
    </message>
    <message>
        <source>All settings of the job options were honoured.</source>
        <translation>Tous les réglages des options de travail ont été respectés.</translation>
    </message>
    <message>
        <source>Settings that were not honoured exactly: %1</source>
        <translation>Réglages qui n’ont pas été respectés exactement : %1</translation>
    </message>
    <message>
        <source>Exported to %1</source>
        <translation>Exporté vers %1</translation>
    </message>
    <message>
        <source>The export failed: %1</source>
        <translation>L’export a échoué : %1</translation>
    </message>
    <message>
        <source>approximated</source>
        <translation>approché</translation>
    </message>
    <message>
        <source>not possible</source>
        <translation>impossible</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>inconnu</translation>
    </message>
</context>
<context>
    <name>WindowFrontend</name>
    <message>
        <source>Export PDF</source>
        <translation>Exporter le PDF</translation>
    </message>
    <message>
        <source>Export Book to PDF</source>
        <translation>Exporter le livre en PDF</translation>
    </message>
    <message>
        <source>Package</source>
        <translation>Assemblage</translation>
    </message>
    <message>
        <source>Package Book</source>
        <translation>Assemblage du livre</translation>
    </message>
    <message>
        <source>Check Fonts</source>
        <translation>Vérifier les polices</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>et %1 autres</translation>
    </message>
    <message>
        <source>The PDF of &quot;%1&quot; will not be as expected.</source>
        <translation>Le PDF de « %1 » ne sera pas comme prévu.</translation>
    </message>
    <message>
        <source>&amp;Export Anyway</source>
        <translation>&amp;Exporter quand même</translation>
    </message>
</context>
</TS>
