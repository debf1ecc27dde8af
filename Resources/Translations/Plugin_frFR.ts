<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en">
<context>
    <name>GCPTAbstractAction</name>
    <message>
        <source>Export to Hopbox...</source>
        <translation>Exporter vers Hopbox...</translation>
    </message>
    <message>
        <source>Export to Hopbox</source>
        <translation>Exporter vers Hopbox</translation>
    </message>
</context>
<context>
    <name>GCSPUSaveAsStamplexPDFDialog</name>
    <message>
        <source>Export to Hopbox</source>
        <translation>Exporter vers Hopbox</translation>
    </message>
    <message>
        <source>&amp;PDF Settings:</source>
        <translation>Réglages &amp;PDF&#xa0;:</translation>
    </message>
    <message>
        <source>Include &amp;File Package</source>
        <translation>Inclure l&apos;a&amp;ssemblage de fichiers</translation>
    </message>
    <message>
        <source>Check this option to deliver an InDesign file Package.</source>
        <translation>Cochez cette option pour livrer un assemblage de fichiers InDesign.</translation>
    </message>
    <message>
        <source>Pages:</source>
        <translation>Pages&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;All</source>
        <translation>&amp;Toutes</translation>
    </message>
    <message>
        <source>&amp;Range:</source>
        <translation>Pla&amp;ge&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Options</source>
        <translation>&amp;Options</translation>
    </message>
    <message>
        <source>Hold down the &quot;Alt&quot; key to remove a Hopbox from the list.</source>
        <translation>Maintenez la touche «&#xa0;Alt&#xa0;» enfoncée pour retirer une Hopbox de la liste.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>No PDF Settings found</source>
        <translation>Aucun réglage PDF trouvé</translation>
    </message>
    <message>
        <source>Export as Stamplex PDF Error</source>
        <translation>Erreur lors de l&apos;exportation en PDF Stamplex</translation>
    </message>
    <message>
        <source>PDF settings are missing for %1. Launch the Hopbox manually and try again.</source>
        <translation>Réglages PDF manquants pour %1. Lancez la Hopbox manuellement, puis réessayez.</translation>
    </message>
    <message>
        <source>Export as Stamplex PDF error</source>
        <translation>Erreur lors de l&apos;exportation en PDF Stamplex</translation>
    </message>
    <message>
        <source>Unable to remove selected PDF setting.</source>
        <translation>Impossible de retirer le réglage PDF sélectionné.</translation>
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
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>GCUSPDFSettingsAdjWdt</name>
    <message>
        <source>All Printer&apos;s &amp;Marks</source>
        <translation>Tous les repères d&apos;i&amp;mpression</translation>
    </message>
    <message>
        <source>&amp;Crop</source>
        <translation>Traits de &amp;coupe</translation>
    </message>
    <message>
        <source>&amp;Bleed</source>
        <translation>Repères de &amp;fond perdu</translation>
    </message>
    <message>
        <source>Re&amp;gistration</source>
        <translation>&amp;Repères de montage</translation>
    </message>
    <message>
        <source>Co&amp;lor Bars</source>
        <translation>Gamme de cou&amp;leurs</translation>
    </message>
    <message>
        <source>Page &amp;Information</source>
        <translation>&amp;Informations sur la page</translation>
    </message>
    <message>
        <source>&amp;Weight:</source>
        <translation>Épaisse&amp;ur&#xa0;:</translation>
    </message>
    <message>
        <source>%1 pt</source>
        <translation>%1 pt</translation>
    </message>
    <message>
        <source>Offse&amp;t:</source>
        <translation>&amp;Décalage&#xa0;:</translation>
    </message>
    <message>
        <source>Bleed:</source>
        <translation>Fond perdu&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Use Document Bleed Settings</source>
        <translation>Utiliser les paramètres de fond perdu du docume&amp;nt</translation>
    </message>
    <message>
        <source>Top:</source>
        <translation>Haut&#xa0;:</translation>
    </message>
    <message>
        <source>Bottom:</source>
        <translation>Bas&#xa0;:</translation>
    </message>
    <message>
        <source>Inside:</source>
        <translation>Intérieur&#xa0;:</translation>
    </message>
    <message>
        <source>Outside:</source>
        <translation>Extérieur&#xa0;:</translation>
    </message>
    <message>
        <source>Bleed at the top</source>
        <translation>Fond perdu en haut</translation>
    </message>
    <message>
        <source>Bleed at the bottom</source>
        <translation>Fond perdu en bas</translation>
    </message>
    <message>
        <source>Bleed on the inside</source>
        <translation>Fond perdu à l&apos;intérieur</translation>
    </message>
    <message>
        <source>Bleed on the outside</source>
        <translation>Fond perdu à l&apos;extérieur</translation>
    </message>
    <message>
        <source>Make all settings the same</source>
        <translation>Uniformiser tous les paramètres</translation>
    </message>
    <message>
        <source>Include &amp;Slug Area (For Bleed)</source>
        <translation>Inclure la &amp;zone de ligne-bloc (pour le fond perdu)</translation>
    </message>
    <message>
        <source>Pri&amp;nt Spreads</source>
        <translation>Imprimer les planc&amp;hes</translation>
    </message>
    <message>
        <source>Offset</source>
        <translation>Décalage</translation>
    </message>
    <message>
        <source>%1: the nearest length that is possible was set, %2.</source>
        <translation>%1 : la longueur possible la plus proche a été choisie, %2.</translation>
    </message>
    <message>
        <source>%1 takes a length, %2, or nothing.</source>
        <translation>%1 : une longueur, %2, ou rien.</translation>
    </message>
    <message>
        <source>As the job options say</source>
        <translation>Selon les options de travail</translation>
    </message>
    <message>
        <source>As the job options say: %1</source>
        <translation>Selon les options de travail : %1</translation>
    </message>
    <message>
        <source>on</source>
        <translation>activé</translation>
    </message>
    <message>
        <source>off</source>
        <translation>désactivé</translation>
    </message>
</context>
<context>
    <name>GIDCSPActionComponent</name>
    <message>
        <source>Export to Hopbox 18, %1 2026 the Hopbox plug-in authors. All rights reserved.</source>
        <translation>Exporter vers Hopbox 18, %1 2026 les auteurs du module externe Hopbox. Tous droits réservés.</translation>
    </message>
    <message>
        <source>The dialog for the export is not installed.</source>
        <translation>La boîte de dialogue d’exportation n’est pas installée.</translation>
    </message>
</context>
<context>
    <name>GQUICollapsibleFrame</name>
    <message>
        <source>Collapsed</source>
        <translation>Réduit</translation>
    </message>
    <message>
        <source>Expanded</source>
        <translation>Développé</translation>
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
    <name>GQUIUnitSpinBox</name>
    <message>
        <source>%1 to %2</source>
        <translation>de %1 à %2</translation>
    </message>
    <message>
        <source>%1, in any unit: 3 mm, 0.125 in, 1p6, 9 pt</source>
        <translation>%1, dans n’importe quelle unité : 3 mm, 0,125 in, 1p6, 9 pt</translation>
    </message>
</context>
<context>
    <name>HopboxBox</name>
    <message>
        <source>Remove</source>
        <translation>Supprimer</translation>
    </message>
</context>
<context>
    <name>HopboxListModel</name>
    <message>
        <source>%1
Hopbox: %2</source>
        <translation>%1
Hopbox : %2</translation>
    </message>
</context>
<context>
    <name>HostFault</name>
    <message>
        <source>The host does not tell a document&apos;s missing fonts.</source>
        <translation>L’application n’indique pas les polices manquantes d’un document.</translation>
    </message>
    <message>
        <source>The host does not tell a book&apos;s documents.</source>
        <translation>L’application n’indique pas les documents d’un livre.</translation>
    </message>
    <message>
        <source>The host does not do what its command needs.</source>
        <translation>L’application ne fait pas ce dont sa commande a besoin.</translation>
    </message>
    <message>
        <source>The host does not take a setting of its command.</source>
        <translation>L’application n’accepte pas un réglage de sa commande.</translation>
    </message>
    <message>
        <source>The host gave a text that can&apos;t be read.</source>
        <translation>L’application a fourni un texte illisible.</translation>
    </message>
    <message>
        <source>The host raised something that is no exception.</source>
        <translation>L’application a déclenché quelque chose qui n’est pas une exception.</translation>
    </message>
    <message>
        <source>The host gave a count that can&apos;t be.</source>
        <translation>L’application a indiqué un nombre impossible.</translation>
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
    <name>OkButtonMode</name>
    <message>
        <source>Remove</source>
        <translation>Supprimer</translation>
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
        <translation>p. ex. 1-5,8,11-13</translation>
    </message>
    <message>
        <source>Page range</source>
        <translation>Plage de pages</translation>
    </message>
    <message>
        <source>A page number is missing after &quot;%1&quot;.</source>
        <translation>Il manque un numéro de page après « %1 ».</translation>
    </message>
    <message>
        <source>The document does not have all of these pages, or a range runs backwards.</source>
        <translation>Le document ne contient pas toutes ces pages, ou une plage va à rebours.</translation>
    </message>
</context>
<context>
    <name>QAccessibleActionInterface</name>
    <message>
        <source>Press</source>
        <translation>Appuyer</translation>
    </message>
    <message>
        <source>Check</source>
        <translation>Cocher</translation>
    </message>
    <message>
        <source>Uncheck</source>
        <translation>Décocher</translation>
    </message>
    <message>
        <source>Toggle</source>
        <translation>Basculer</translation>
    </message>
    <message>
        <source>SetFocus</source>
        <translation>Activer</translation>
    </message>
    <message>
        <source>ShowMenu</source>
        <translation>Afficher le menu</translation>
    </message>
    <message>
        <source>Triggers the action</source>
        <translation>Déclenche l’action</translation>
    </message>
    <message>
        <source>Toggles the state</source>
        <translation>Inverse l’état</translation>
    </message>
    <message>
        <source>Sets the focus</source>
        <translation>Donne le focus</translation>
    </message>
</context>
<context>
    <name>QComboBox</name>
    <message>
        <source>Open the combo box selection popup</source>
        <translation>Ouvrir la liste</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Annuler</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Rétablir</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Co&amp;uper</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>Co&amp;ller</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Tout sélectionner</translation>
    </message>
</context>
<context>
    <name>QScrollBar</name>
    <message>
        <source>Scroll here</source>
        <translation>Défiler jusqu’ici</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>Début</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>Fin</translation>
    </message>
    <message>
        <source>Page up</source>
        <translation>Page précédente</translation>
    </message>
    <message>
        <source>Page down</source>
        <translation>Page suivante</translation>
    </message>
    <message>
        <source>Scroll up</source>
        <translation>Défiler vers le haut</translation>
    </message>
    <message>
        <source>Scroll down</source>
        <translation>Défiler vers le bas</translation>
    </message>
</context>
<context>
    <name>QShortcut</name>
    <message>
        <source>Ctrl</source>
        <translation>Ctrl</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Maj</translation>
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
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Tout sélectionner</translation>
    </message>
</context>
<context>
    <name>RefusalText</name>
    <message>
        <source>The plug-in can&apos;t show its windows: %1</source>
        <translation>Le module externe ne peut pas afficher ses fenêtres : %1</translation>
    </message>
    <message>
        <source>the host is a Qt program without windows.</source>
        <translation>l’application est un programme Qt sans fenêtres.</translation>
    </message>
    <message>
        <source>The plug-in is loaded already.</source>
        <translation>Le module externe est déjà chargé.</translation>
    </message>
    <message>
        <source>The host gave the plug-in no services.</source>
        <translation>L’application n’a fourni aucun service au module externe.</translation>
    </message>
    <message>
        <source>The plug-in needs version %1 of the host interface; this host has version %2.</source>
        <translation>Le module externe a besoin de la version %1 de l’interface de l’application ; cette application a la version %2.</translation>
    </message>
    <message>
        <source>The plug-in is not loaded.</source>
        <translation>Le module externe n’est pas chargé.</translation>
    </message>
    <message>
        <source>The plug-in&apos;s actions are in use already.</source>
        <translation>Les actions du module externe sont déjà utilisées.</translation>
    </message>
    <message>
        <source>Qt&apos;s platform plug-in &quot;%1&quot; is missing.</source>
        <translation>le module de plateforme « %1 » de Qt est absent.</translation>
    </message>
    <message>
        <source>the Wayland display can&apos;t be reached.</source>
        <translation>l’affichage Wayland est inaccessible.</translation>
    </message>
    <message>
        <source>there is no display.</source>
        <translation>il n’y a pas d’affichage.</translation>
    </message>
    <message>
        <source>the display &quot;%1&quot; can&apos;t be reached.</source>
        <translation>l’affichage « %1 » est inaccessible.</translation>
    </message>
    <message>
        <source>The host&apos;s choices can&apos;t be read.</source>
        <translation>Les choix de l’application sont illisibles.</translation>
    </message>
    <message>
        <source>The plug-in needs version %1 of the host&apos;s table.</source>
        <translation>Le module externe a besoin de la version %1 de la table de l’application.</translation>
    </message>
</context>
</TS>
