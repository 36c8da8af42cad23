<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>BrowserPane</name>
    <message>
        <source>Working</source>
        <translation>Aktiv</translation>
    </message>
    <message>
        <source>Connection settings</source>
        <translation>Verbindungseinstellungen</translation>
    </message>
    <message>
        <source>Update Links...</source>
        <translation>Links anpassen …</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>Ignorieren</translation>
    </message>
</context>
<context>
    <name>CharacterSheet</name>
    <message>
        <source>Insert special character</source>
        <translation>Sonderzeichen einfügen</translation>
    </message>
    <message>
        <source>&amp;Find:</source>
        <translation>&amp;Suchen:</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>English name or code, such as “arrow right” or “2192”</source>
        <translation>Englischer Name oder Code, etwa „arrow right“ oder „2192“</translation>
    </message>
    <message>
        <source>&amp;Group:</source>
        <translation>&amp;Gruppe:</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Gruppe</translation>
    </message>
    <message>
        <source>Characters</source>
        <translation>Zeichen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Insert</source>
        <translation>Einfügen</translation>
    </message>
</context>
<context>
    <name>ClassSheet</name>
    <message>
        <source>Move inline style to a class</source>
        <translation>Stilattribut in eine Klasse verschieben</translation>
    </message>
    <message>
        <source>&amp;Class</source>
        <translation>&amp;Klasse</translation>
    </message>
    <message>
        <source>&amp;Style sheet</source>
        <translation>&amp;Stylesheet</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>ConfigPanel</name>
    <message>
        <source>Connection settings</source>
        <translation>Verbindungseinstellungen</translation>
    </message>
    <message>
        <source>P&amp;rotocol:</source>
        <translation>P&amp;rotokoll:</translation>
    </message>
    <message>
        <source>Protocol</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>&amp;Server:</source>
        <translation>&amp;Server:</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>&amp;Volume:</source>
        <translation>Frei&amp;gabe:</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Freigabe</translation>
    </message>
    <message>
        <source>&amp;Path:</source>
        <translation>&amp;Pfad:</translation>
    </message>
    <message>
        <source>Path</source>
        <translation>Pfad</translation>
    </message>
    <message>
        <source>Choose...</source>
        <translation>Auswählen …</translation>
    </message>
    <message>
        <source>Choose folder</source>
        <translation>Ordner auswählen</translation>
    </message>
    <message>
        <source>&amp;User:</source>
        <translation>&amp;Benutzer:</translation>
    </message>
    <message>
        <source>User</source>
        <translation>Benutzer</translation>
    </message>
    <message>
        <source>Pass&amp;word:</source>
        <translation>Pass&amp;wort:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
    <message>
        <source>Show password</source>
        <translation>Passwort anzeigen</translation>
    </message>
    <message>
        <source>Connect when the site &amp;opens</source>
        <translation>Beim Ö&amp;ffnen der Website verbinden</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
</context>
<context>
    <name>ElementSheet</name>
    <message>
        <source>Insert element</source>
        <translation>Element einfügen</translation>
    </message>
    <message>
        <source>Element</source>
        <translation>Element</translation>
    </message>
    <message>
        <source>First letters</source>
        <translation>Anfangsbuchstaben</translation>
    </message>
    <message>
        <source>Elements</source>
        <translation>Elemente</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Insert</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>P&amp;lace:</source>
        <translation>&amp;Ort:</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>&amp;Element:</source>
        <translation>&amp;Element:</translation>
    </message>
</context>
<context>
    <name>EndpointForm</name>
    <message>
        <source>Protocol</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Freigabe</translation>
    </message>
    <message>
        <source>Path</source>
        <translation>Pfad</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Auswählen …</translation>
    </message>
    <message>
        <source>Choose the folder of the site</source>
        <translation>Ordner der Website auswählen</translation>
    </message>
    <message>
        <source>User</source>
        <translation>Benutzer</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Anzeigen</translation>
    </message>
    <message>
        <source>Show the password in clear</source>
        <translation>Passwort im Klartext anzeigen</translation>
    </message>
    <message>
        <source>SSH port</source>
        <translation>SSH-Port</translation>
    </message>
    <message>
        <source>Connect on opening</source>
        <translation>Beim Öffnen verbinden</translation>
    </message>
</context>
<context>
    <name>HTMLDocument</name>
    <message>
        <source>Insert</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Insert an element into the selected one</source>
        <translation>Ein Element in das ausgewählte einfügen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Delete the selected element</source>
        <translation>Das ausgewählte Element löschen</translation>
    </message>
    <message>
        <source>Outline</source>
        <translation>Gliederung</translation>
    </message>
    <message>
        <source>Formatting</source>
        <translation>Formatierung</translation>
    </message>
    <message>
        <source>Style sheet</source>
        <translation>Stylesheet</translation>
    </message>
    <message>
        <source>No style sheets</source>
        <translation>Keine Stylesheets</translation>
    </message>
    <message>
        <source>CSS</source>
        <translation>CSS</translation>
    </message>
    <message>
        <source>Save CSS</source>
        <translation>CSS sichern</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Insert</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>F&amp;ormat</source>
        <translation>F&amp;ormat</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Windows</source>
        <translation>&amp;Fenster</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <source>Make a new page</source>
        <translation>Eine neue Seite anlegen</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>Ö&amp;ffnen …</translation>
    </message>
    <message>
        <source>Open a page</source>
        <translation>Eine Seite öffnen</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Sichern</translation>
    </message>
    <message>
        <source>Save the page</source>
        <translation>Die Seite sichern</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Sichern &amp;unter …</translation>
    </message>
    <message>
        <source>Save the page under another name; its links are kept right</source>
        <translation>Die Seite unter anderem Namen sichern; ihre Links bleiben richtig</translation>
    </message>
    <message>
        <source>Re&amp;vert to Saved</source>
        <translation>Zur &amp;gesicherten Fassung zurückkehren</translation>
    </message>
    <message>
        <source>Read the page from its file again</source>
        <translation>Die Seite erneut aus ihrer Datei lesen</translation>
    </message>
    <message>
        <source>&amp;Publish Page...</source>
        <translation>Seite &amp;veröffentlichen …</translation>
    </message>
    <message>
        <source>Save the page, and upload it with the images, style sheets and other files that it needs</source>
        <translation>Die Seite sichern und mit Bildern, Stylesheets und allem, was sie braucht, hochladen</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>W&amp;iederholen</translation>
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
        <translation>Einset&amp;zen</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>Alles aus&amp;wählen</translation>
    </message>
    <message>
        <source>&amp;Delete Element</source>
        <translation>Element &amp;löschen</translation>
    </message>
    <message>
        <source>Delete the element selected in the outline</source>
        <translation>Das in der Gliederung ausgewählte Element löschen</translation>
    </message>
    <message>
        <source>Change the title of the page</source>
        <translation>Den Titel der Seite ändern</translation>
    </message>
    <message>
        <source>&amp;Reload</source>
        <translation>&amp;Neu laden</translation>
    </message>
    <message>
        <source>Show the page anew, with changed style sheets and images</source>
        <translation>Die Seite mit geänderten Stylesheets und Bildern neu anzeigen</translation>
    </message>
    <message>
        <source>Page &amp;Source...</source>
        <translation>&amp;Quelltext …</translation>
    </message>
    <message>
        <source>Edit the page as text</source>
        <translation>Die Seite als Text bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Tidy Page Source</source>
        <translation>Quellte&amp;xt ordnen</translation>
    </message>
    <message>
        <source>Print the whole page anew, a block element a line, indented; browsers show it unchanged</source>
        <translation>Die ganze Seite neu schreiben, je Blockelement eine Zeile, eingerückt; Browser zeigen sie unverändert</translation>
    </message>
    <message>
        <source>Script &amp;Console</source>
        <translation>&amp;Skriptkonsole</translation>
    </message>
    <message>
        <source>Run scripts in the page</source>
        <translation>Skripte in der Seite ausführen</translation>
    </message>
    <message>
        <source>Zoom &amp;In</source>
        <translation>Ver&amp;größern</translation>
    </message>
    <message>
        <source>Zoom &amp;Out</source>
        <translation>Ver&amp;kleinern</translation>
    </message>
    <message>
        <source>&amp;Actual Size</source>
        <translation>&amp;Originalgröße</translation>
    </message>
    <message>
        <source>Bold</source>
        <translation>Fett</translation>
    </message>
    <message>
        <source>Italic</source>
        <translation>Kursiv</translation>
    </message>
    <message>
        <source>Underline</source>
        <translation>Unterstrichen</translation>
    </message>
    <message>
        <source>Make &amp;Link...</source>
        <translation>&amp;Link erstellen …</translation>
    </message>
    <message>
        <source>Make the selection a link</source>
        <translation>Die Auswahl zu einem Link machen</translation>
    </message>
    <message>
        <source>&amp;Edit Link...</source>
        <translation>Link &amp;bearbeiten …</translation>
    </message>
    <message>
        <source>Change the link at the caret</source>
        <translation>Den Link an der Einfügemarke ändern</translation>
    </message>
    <message>
        <source>&amp;Remove Link</source>
        <translation>Link &amp;entfernen</translation>
    </message>
    <message>
        <source>Take the link at the caret away</source>
        <translation>Den Link an der Einfügemarke entfernen</translation>
    </message>
    <message>
        <source>Insert I&amp;mage...</source>
        <translation>Bil&amp;d einfügen …</translation>
    </message>
    <message>
        <source>Insert an image</source>
        <translation>Ein Bild einfügen</translation>
    </message>
    <message>
        <source>I&amp;nspect Element</source>
        <translation>Element &amp;untersuchen</translation>
    </message>
    <message>
        <source>Pa&amp;ge Title...</source>
        <translation>Seiten&amp;titel …</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Text, selector or XPath</source>
        <translation>Text, Selektor oder XPath</translation>
    </message>
    <message>
        <source>Find Previous</source>
        <translation>Rückwärts suchen</translation>
    </message>
    <message>
        <source>Find Next</source>
        <translation>Weitersuchen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>&amp;Find in Outline</source>
        <translation>In der Gliederung &amp;suchen</translation>
    </message>
    <message>
        <source>Find elements by text, CSS selector or XPath</source>
        <translation>Elemente nach Text, CSS-Selektor oder XPath suchen</translation>
    </message>
    <message>
        <source>Find &amp;Next</source>
        <translation>Weitersu&amp;chen</translation>
    </message>
    <message>
        <source>Find Previou&amp;s</source>
        <translation>Rückwärts s&amp;uchen</translation>
    </message>
    <message>
        <source>Dup&amp;licate</source>
        <translation>Du&amp;plizieren</translation>
    </message>
    <message>
        <source>Duplicate the element selected in the outline</source>
        <translation>Das in der Gliederung ausgewählte Element duplizieren</translation>
    </message>
    <message>
        <source>&amp;Move Up</source>
        <translation>Nach &amp;oben</translation>
    </message>
    <message>
        <source>Move the element in front of the one above</source>
        <translation>Das Element vor das darüber stellen</translation>
    </message>
    <message>
        <source>Mo&amp;ve Down</source>
        <translation>Nach u&amp;nten</translation>
    </message>
    <message>
        <source>Move the element behind the one below</source>
        <translation>Das Element hinter das darunter stellen</translation>
    </message>
    <message>
        <source>&amp;Hide or Show in Page</source>
        <translation>In der Seite aus- oder ein&amp;blenden</translation>
    </message>
    <message>
        <source>Hide the element in the page shown; the file keeps it</source>
        <translation>Das Element in der gezeigten Seite ausblenden; die Datei behält es</translation>
    </message>
    <message>
        <source>Show Out&amp;line</source>
        <translation>G&amp;liederung zeigen</translation>
    </message>
    <message>
        <source>Show St&amp;yle Sheets</source>
        <translation>Styleshee&amp;ts zeigen</translation>
    </message>
    <message>
        <source>Page check</source>
        <translation>Seitenprüfung</translation>
    </message>
    <message>
        <source>Page Chec&amp;k</source>
        <translation>Seite &amp;prüfen</translation>
    </message>
    <message>
        <source>List what is wrong with the page: missing texts, links, repeated ids, contrast</source>
        <translation>Zeigt, was an der Seite nicht stimmt: fehlende Texte, Links, mehrfache ids, Kontrast</translation>
    </message>
    <message>
        <source>&amp;Table</source>
        <translation>&amp;Tabelle</translation>
    </message>
    <message>
        <source>&amp;Insert Table...</source>
        <translation>Tabelle e&amp;infügen …</translation>
    </message>
    <message>
        <source>Insert a table at the caret</source>
        <translation>Eine Tabelle an der Einfügemarke einfügen</translation>
    </message>
    <message>
        <source>Row &amp;Above</source>
        <translation>Zeile &amp;darüber</translation>
    </message>
    <message>
        <source>Add a row above the selected cells</source>
        <translation>Eine Zeile über den ausgewählten Zellen einfügen</translation>
    </message>
    <message>
        <source>Row &amp;Below</source>
        <translation>Zeile dar&amp;unter</translation>
    </message>
    <message>
        <source>Add a row below the selected cells</source>
        <translation>Eine Zeile unter den ausgewählten Zellen einfügen</translation>
    </message>
    <message>
        <source>Column &amp;Left</source>
        <translation>Spalte &amp;links</translation>
    </message>
    <message>
        <source>Add a column left of the selected cells</source>
        <translation>Eine Spalte links von den ausgewählten Zellen einfügen</translation>
    </message>
    <message>
        <source>Column &amp;Right</source>
        <translation>Spalte &amp;rechts</translation>
    </message>
    <message>
        <source>Add a column right of the selected cells</source>
        <translation>Eine Spalte rechts von den ausgewählten Zellen einfügen</translation>
    </message>
    <message>
        <source>Remove R&amp;ow</source>
        <translation>&amp;Zeile entfernen</translation>
    </message>
    <message>
        <source>Remove the rows of the selected cells</source>
        <translation>Die Zeilen der ausgewählten Zellen entfernen</translation>
    </message>
    <message>
        <source>Remove &amp;Column</source>
        <translation>S&amp;palte entfernen</translation>
    </message>
    <message>
        <source>Remove the columns of the selected cells</source>
        <translation>Die Spalten der ausgewählten Zellen entfernen</translation>
    </message>
    <message>
        <source>&amp;Merge Cells</source>
        <translation>Zellen &amp;verbinden</translation>
    </message>
    <message>
        <source>Make one cell of the selected ones</source>
        <translation>Aus den ausgewählten Zellen eine machen</translation>
    </message>
    <message>
        <source>&amp;Split Cell</source>
        <translation>Zelle &amp;teilen</translation>
    </message>
    <message>
        <source>Make a merged cell single cells again</source>
        <translation>Eine verbundene Zelle wieder in einzelne teilen</translation>
    </message>
    <message>
        <source>&amp;Header Row</source>
        <translation>&amp;Kopfzeile</translation>
    </message>
    <message>
        <source>Make the first row of the table a header, or one of the body</source>
        <translation>Die erste Zeile der Tabelle zum Kopf machen oder zu einer des Rumpfes</translation>
    </message>
    <message>
        <source>Attributes</source>
        <translation>Attribute</translation>
    </message>
    <message>
        <source>This image has no text for readers who don&apos;t see it (alt).</source>
        <translation>Dieses Bild hat keinen Text für Leser, die es nicht sehen (alt).</translation>
    </message>
    <message>
        <source>Needs No Text</source>
        <translation>Braucht keinen Text</translation>
    </message>
    <message>
        <source>The image is for decoration: screen readers skip it</source>
        <translation>Das Bild ist Schmuck: Screenreader übergehen es</translation>
    </message>
    <message>
        <source>Keep ratio</source>
        <translation>Proportional</translation>
    </message>
    <message>
        <source>Width and height change together</source>
        <translation>Breite und Höhe ändern sich gemeinsam</translation>
    </message>
    <message>
        <source>Make Link...</source>
        <translation>Link erstellen …</translation>
    </message>
    <message>
        <source>Show Attri&amp;butes</source>
        <translation>Attri&amp;bute zeigen</translation>
    </message>
    <message>
        <source>Page &amp;Width</source>
        <translation>S&amp;eitenbreite</translation>
    </message>
    <message>
        <source>New Page &amp;From...</source>
        <translation>Neue Seite &amp;aus …</translation>
    </message>
    <message>
        <source>Make a new page from another one; its links are kept right</source>
        <translation>Neue Seite aus einer anderen machen; ihre Links bleiben richtig</translation>
    </message>
    <message>
        <source>&amp;Phone (390 Pixels)</source>
        <translation>&amp;Telefon (390 Pixel)</translation>
    </message>
    <message>
        <source>Show the page as wide as on a phone</source>
        <translation>Seite so breit wie auf einem Telefon zeigen</translation>
    </message>
    <message>
        <source>&amp;Tablet (768 Pixels)</source>
        <translation>T&amp;ablet (768 Pixel)</translation>
    </message>
    <message>
        <source>Show the page as wide as on a tablet</source>
        <translation>Seite so breit wie auf einem Tablet zeigen</translation>
    </message>
    <message>
        <source>&amp;Desktop (1280 Pixels)</source>
        <translation>&amp;Schreibtisch (1280 Pixel)</translation>
    </message>
    <message>
        <source>Show the page as wide as on a desktop</source>
        <translation>Seite so breit wie auf einem Schreibtischrechner zeigen</translation>
    </message>
    <message>
        <source>As Wide as the &amp;Window</source>
        <translation>So breit wie das &amp;Fenster</translation>
    </message>
    <message>
        <source>Show the page as wide as the window has room</source>
        <translation>Seite so breit zeigen, wie das Fenster Platz hat</translation>
    </message>
    <message>
        <source>&amp;Dark Color Scheme</source>
        <translation>&amp;Dunkles Farbschema</translation>
    </message>
    <message>
        <source>Show the page as for readers who prefer a dark color scheme</source>
        <translation>Seite so zeigen wie für Leser, die ein dunkles Farbschema bevorzugen</translation>
    </message>
    <message>
        <source>Print Styl&amp;e</source>
        <translation>D&amp;ruckansicht</translation>
    </message>
    <message>
        <source>Show the page with its style sheets for paper</source>
        <translation>Seite mit ihren Stylesheets für Papier zeigen</translation>
    </message>
    <message>
        <source>Save and Open in &amp;Browser</source>
        <translation>Sichern und im Bro&amp;wser öffnen</translation>
    </message>
    <message>
        <source>S&amp;how All Nodes</source>
        <translation>&amp;Alle Knoten zeigen</translation>
    </message>
    <message>
        <source>Shows texts, comments, the doctype and server code as rows of the outline</source>
        <translation>Zeigt Texte, Kommentare, den Dokumenttyp und Servercode als Zeilen der Gliederung</translation>
    </message>
    <message>
        <source>Edit Mar&amp;kup...</source>
        <translation>&amp;Markup bearbeiten …</translation>
    </message>
    <message>
        <source>Style rules</source>
        <translation>Stilregeln</translation>
    </message>
    <message>
        <source>New Rule</source>
        <translation>Neue Regel</translation>
    </message>
    <message>
        <source>Add a rule for a class, the id or the name of the selected element</source>
        <translation>Fügt eine Regel für eine Klasse, die ID oder den Namen des ausgewählten Elements hinzu</translation>
    </message>
    <message>
        <source>Rules</source>
        <translation>Regeln</translation>
    </message>
    <message>
        <source>Computed</source>
        <translation>Berechnet</translation>
    </message>
    <message>
        <source>Filter the computed values</source>
        <translation>Berechnete Werte filtern</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filtern</translation>
    </message>
    <message>
        <source>Computed values</source>
        <translation>Berechnete Werte</translation>
    </message>
    <message>
        <source>Show Style R&amp;ules</source>
        <translation>St&amp;ilregeln zeigen</translation>
    </message>
    <message>
        <source>Show the style rules that apply to the selected element, and its computed values</source>
        <translation>Zeigt die Stilregeln, die für das ausgewählte Element gelten, und seine berechneten Werte</translation>
    </message>
    <message>
        <source>Check S&amp;pelling</source>
        <translation>Re&amp;chtschreibung prüfen</translation>
    </message>
    <message>
        <source>Mark misspelled words, with the desktop&apos;s dictionaries for the language of the page</source>
        <translation>Markiert falsch geschriebene Wörter, mit den Wörterbüchern des Desktops für die Sprache der Seite</translation>
    </message>
    <message>
        <source>Headings</source>
        <translation>Überschriften</translation>
    </message>
    <message>
        <source>Insert M&amp;ore...</source>
        <translation>Me&amp;hr einfügen …</translation>
    </message>
    <message>
        <source>Headin&amp;gs</source>
        <translation>Überschri&amp;ften</translation>
    </message>
    <message>
        <source>Lists the headings of the page</source>
        <translation>Listet die Überschriften der Seite auf</translation>
    </message>
    <message>
        <source>Find in the page</source>
        <translation>In der Seite suchen</translation>
    </message>
    <message>
        <source>Match case</source>
        <translation>Groß- und Kleinschreibung beachten</translation>
    </message>
    <message>
        <source>Whole words</source>
        <translation>Ganze Wörter</translation>
    </message>
    <message>
        <source>Regular expression</source>
        <translation>Regulärer Ausdruck</translation>
    </message>
    <message>
        <source>Regular expression; $1 stands for the first group in the replacement</source>
        <translation>Regulärer Ausdruck; $1 steht in der Ersetzung für die erste Gruppe</translation>
    </message>
    <message>
        <source>In the source</source>
        <translation>Im Quelltext</translation>
    </message>
    <message>
        <source>In the source instead of the text</source>
        <translation>Im Quelltext statt im Text</translation>
    </message>
    <message>
        <source>Previous match</source>
        <translation>Vorige Fundstelle</translation>
    </message>
    <message>
        <source>Previous match (Shift+Enter)</source>
        <translation>Vorige Fundstelle (Umschalt+Eingabe)</translation>
    </message>
    <message>
        <source>Next match</source>
        <translation>Nächste Fundstelle</translation>
    </message>
    <message>
        <source>Next match (Enter)</source>
        <translation>Nächste Fundstelle (Eingabe)</translation>
    </message>
    <message>
        <source>Replace with</source>
        <translation>Ersetzen durch</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Replace All</source>
        <translation>Alle ersetzen</translation>
    </message>
    <message>
        <source>Find and R&amp;eplace...</source>
        <translation>Suchen un&amp;d ersetzen …</translation>
    </message>
    <message>
        <source>Style sheets of the page</source>
        <translation>Stylesheets der Seite</translation>
    </message>
    <message>
        <source>Next problem</source>
        <translation>Nächster Fehler</translation>
    </message>
    <message>
        <source>Next problem (Ctrl+.)</source>
        <translation>Nächster Fehler (Strg+.)</translation>
    </message>
    <message>
        <source>In Site...</source>
        <translation>In der Website …</translation>
    </message>
    <message>
        <source>Find in &amp;Whole Site...</source>
        <translation>In der &amp;ganzen Website suchen …</translation>
    </message>
    <message>
        <source>Find the text in all pages of the site, and replace it</source>
        <translation>Sucht den Text in allen Seiten der Website und ersetzt ihn</translation>
    </message>
    <message>
        <source>Pre&amp;view with Scripts</source>
        <translation>&amp;Vorschau mit Skripten</translation>
    </message>
    <message>
        <source>Show the page in a window where its scripts run, without network and without files outside the site</source>
        <translation>Zeigt die Seite in einem Fenster, in dem ihre Skripte laufen, ohne Netz und ohne Dateien außerhalb der Website</translation>
    </message>
    <message>
        <source>New Page from &amp;Template...</source>
        <translation>Neue Seite aus Vor&amp;lage …</translation>
    </message>
    <message>
        <source>Make a new page from one of your templates</source>
        <translation>Legt eine neue Seite aus einer Ihrer Vorlagen an</translation>
    </message>
    <message>
        <source>Save as Te&amp;mplate...</source>
        <translation>Als Vo&amp;rlage sichern …</translation>
    </message>
    <message>
        <source>Keep a copy of the page to make new ones from; its links are kept right</source>
        <translation>Bewahrt eine Kopie der Seite auf, aus der neue entstehen; ihre Links bleiben richtig</translation>
    </message>
    <message>
        <source>Classes and IDs o&amp;f Site</source>
        <translation>Klassen und IDs der &amp;Website</translation>
    </message>
    <message>
        <source>List the classes and ids of all pages and style sheets of the site</source>
        <translation>Listet die Klassen und IDs aller Seiten und Stylesheets der Website</translation>
    </message>
    <message>
        <source>Inserts any element that may stand in or beside the selected one</source>
        <translation>Fügt ein beliebiges Element ein, das im gewählten oder daneben stehen darf</translation>
    </message>
    <message>
        <source>States</source>
        <translation>Zustände</translation>
    </message>
    <message>
        <source>Show the selected element as if the mouse were over it, or in another state</source>
        <translation>Das gewählte Element so zeigen, als wäre die Maus darüber, oder in einem anderen Zustand</translation>
    </message>
    <message>
        <source>Box of the element</source>
        <translation>Box des Elements</translation>
    </message>
    <message>
        <source>Insert Special &amp;Character...</source>
        <translation>Sonder&amp;zeichen einfügen …</translation>
    </message>
    <message>
        <source>Insert a character that the keyboard lacks</source>
        <translation>Ein Zeichen einfügen, das auf der Tastatur fehlt</translation>
    </message>
    <message>
        <source>Ne&amp;xt Pane</source>
        <translation>Näc&amp;hster Bereich</translation>
    </message>
    <message>
        <source>Go on by keyboard: outline, page, page check, attributes, style rules, style sheets</source>
        <translation>Per Tastatur weiter: Gliederung, Seite, Seitenprüfung, Attribute, Stilregeln, Stylesheets</translation>
    </message>
    <message>
        <source>Previous Pane</source>
        <translation>Vorheriger Bereich</translation>
    </message>
</context>
<context>
    <name>HaldenDoc</name>
    <message>
        <source>Set Up Remote Login</source>
        <translation>Remote Login einrichten</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Site</source>
        <translation>&amp;Website</translation>
    </message>
    <message>
        <source>&amp;Windows</source>
        <translation>&amp;Fenster</translation>
    </message>
    <message>
        <source>Tool bar</source>
        <translation>Werkzeugleiste</translation>
    </message>
    <message>
        <source>&amp;Upload...</source>
        <translation>&amp;Hochladen …</translation>
    </message>
    <message>
        <source>Copy new and modified files from source to destination</source>
        <translation>Neue und geänderte Dateien von der Quelle zum Ziel kopieren</translation>
    </message>
    <message>
        <source>&amp;Download...</source>
        <translation>Herunterla&amp;den …</translation>
    </message>
    <message>
        <source>Copy new and modified files from destination to source</source>
        <translation>Neue und geänderte Dateien vom Ziel zur Quelle kopieren</translation>
    </message>
    <message>
        <source>&amp;Restore from Last Publish...</source>
        <translation>&amp;Letzte Veröffentlichung rückgängig machen …</translation>
    </message>
    <message>
        <source>Put back what a publish has replaced or deleted on the destination</source>
        <translation>Zurückholen, was eine Veröffentlichung am Ziel ersetzt oder gelöscht hat</translation>
    </message>
    <message>
        <source>&amp;New Folder</source>
        <translation>&amp;Neuer Ordner</translation>
    </message>
    <message>
        <source>Make a folder in the current column</source>
        <translation>Einen Ordner in der aktuellen Spalte anlegen</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <source>Open the selected item</source>
        <translation>Das ausgewählte Objekt öffnen</translation>
    </message>
    <message>
        <source>Open in &amp;Browser</source>
        <translation>Im Bro&amp;wser öffnen</translation>
    </message>
    <message>
        <source>Open the selected items in the web browser</source>
        <translation>Die ausgewählten Objekte im Webbrowser öffnen</translation>
    </message>
    <message>
        <source>&amp;Show in File Manager</source>
        <translation>Im &amp;Dateimanager zeigen</translation>
    </message>
    <message>
        <source>Show the selected items in the desktop&apos;s file manager</source>
        <translation>Die ausgewählten Objekte im Dateimanager des Desktops zeigen</translation>
    </message>
    <message>
        <source>&amp;Properties</source>
        <translation>&amp;Eigenschaften</translation>
    </message>
    <message>
        <source>Show size, time and permissions of the selected items</source>
        <translation>Größe, Zeit und Rechte der ausgewählten Objekte zeigen</translation>
    </message>
    <message>
        <source>&amp;Copy Path</source>
        <translation>Pfad k&amp;opieren</translation>
    </message>
    <message>
        <source>Copy the full paths of the selected items</source>
        <translation>Die vollständigen Pfade der ausgewählten Objekte kopieren</translation>
    </message>
    <message>
        <source>Copy Relative L&amp;ink</source>
        <translation>Relativen L&amp;ink kopieren</translation>
    </message>
    <message>
        <source>Copy how a page at the top of the site links to the selected items</source>
        <translation>Kopieren, wie eine Seite auf oberster Ebene der Website auf die ausgewählten Objekte verweist</translation>
    </message>
    <message>
        <source>Copy the selected items alone to the other side</source>
        <translation>Nur die ausgewählten Objekte auf die andere Seite kopieren</translation>
    </message>
    <message>
        <source>&amp;Close Window</source>
        <translation>Fenster s&amp;chließen</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Undo Move</source>
        <translation>&amp;Rückgängig: Bewegen</translation>
    </message>
    <message>
        <source>Take the last change to files back: a move, rename or copy with its links, a deletion, a duplicate, a new folder</source>
        <translation>Die letzte Änderung an Dateien zurücknehmen: Bewegen, Umbenennen oder Kopieren samt Links, Löschen, Duplizieren, einen neuen Ordner</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <source>Rename the selected item</source>
        <translation>Das ausgewählte Objekt umbenennen</translation>
    </message>
    <message>
        <source>Copy the selected item beside itself</source>
        <translation>Das ausgewählte Objekt an Ort und Stelle kopieren</translation>
    </message>
    <message>
        <source>&amp;Delete...</source>
        <translation>&amp;Löschen …</translation>
    </message>
    <message>
        <source>Delete the selected items</source>
        <translation>Die ausgewählten Objekte löschen</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>Alles aus&amp;wählen</translation>
    </message>
    <message>
        <source>Select all items of the current column</source>
        <translation>Alle Objekte der aktuellen Spalte auswählen</translation>
    </message>
    <message>
        <source>Show &amp;Hidden Files</source>
        <translation>&amp;Versteckte Dateien zeigen</translation>
    </message>
    <message>
        <source>Show files and folders whose names begin with a dot</source>
        <translation>Dateien und Ordner zeigen, deren Namen mit einem Punkt beginnen</translation>
    </message>
    <message>
        <source>&amp;Panes Side by Side</source>
        <translation>&amp;Bereiche nebeneinander</translation>
    </message>
    <message>
        <source>Show source and destination beside each other instead of one above the other</source>
        <translation>Quelle und Ziel nebeneinander statt übereinander zeigen</translation>
    </message>
    <message>
        <source>Re&amp;load</source>
        <translation>&amp;Neu laden</translation>
    </message>
    <message>
        <source>List both sides again</source>
        <translation>Beide Seiten neu auflisten</translation>
    </message>
    <message>
        <source>&amp;Missing Links</source>
        <translation>Fehlende Lin&amp;ks</translation>
    </message>
    <message>
        <source>List all links of the site and mark the missing ones</source>
        <translation>Alle Links der Website auflisten und die fehlenden markieren</translation>
    </message>
    <message>
        <source>Un&amp;linked Items</source>
        <translation>Un&amp;verlinkte Dateien</translation>
    </message>
    <message>
        <source>List the files of the site that nothing links to</source>
        <translation>Die Dateien der Website auflisten, auf die nichts verweist</translation>
    </message>
    <message>
        <source>&amp;Check Connection</source>
        <translation>Verbindung &amp;prüfen</translation>
    </message>
    <message>
        <source>&amp;Source Settings...</source>
        <translation>&amp;Einstellungen der Quelle …</translation>
    </message>
    <message>
        <source>D&amp;estination Settings...</source>
        <translation>Einstellungen des &amp;Ziels …</translation>
    </message>
    <message>
        <source>Publis&amp;h Selected Items...</source>
        <translation>Aus&amp;wahl veröffentlichen …</translation>
    </message>
    <message>
        <source>Dup&amp;licate</source>
        <translation>Du&amp;plizieren</translation>
    </message>
    <message>
        <source>Set Up Remote Log&amp;in</source>
        <translation>Remote Login e&amp;inrichten</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <source>Put the selected items on the clipboard, to be moved</source>
        <translation>Die ausgewählten Objekte in die Zwischenablage legen, um sie zu bewegen</translation>
    </message>
    <message>
        <source>Cop&amp;y</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Put the selected items on the clipboard</source>
        <translation>Die ausgewählten Objekte in die Zwischenablage legen</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>Einset&amp;zen</translation>
    </message>
    <message>
        <source>Copy or move the files on the clipboard into the current column</source>
        <translation>Die Dateien aus der Zwischenablage in die aktuelle Spalte kopieren oder bewegen</translation>
    </message>
    <message>
        <source>Show each page that the last move, rename or report was about</source>
        <translation>Jede Seite anzeigen, um die es beim letzten Verschieben, Umbenennen oder Bericht ging</translation>
    </message>
    <message>
        <source>Log of the Last &amp;Job</source>
        <translation>&amp;Protokoll des letzten Vorgangs</translation>
    </message>
    <message>
        <source>&amp;Find in Site...</source>
        <translation>In der Website &amp;suchen …</translation>
    </message>
    <message>
        <source>Find text in all pages of the site, and replace it</source>
        <translation>Sucht Text in allen Seiten der Website und ersetzt ihn</translation>
    </message>
    <message>
        <source>Cl&amp;asses and IDs</source>
        <translation>Kl&amp;assen und IDs</translation>
    </message>
    <message>
        <source>List the classes and ids of all pages and style sheets, and rename them</source>
        <translation>Listet die Klassen und IDs aller Seiten und Stylesheets und benennt sie um</translation>
    </message>
</context>
<context>
    <name>JobLine</name>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>S&amp;top</source>
        <translation>S&amp;topp</translation>
    </message>
    <message>
        <source>&amp;Go On</source>
        <translation>&amp;Weiter</translation>
    </message>
    <message>
        <source>Begin the stopped job once more</source>
        <translation>Den angehaltenen Vorgang noch einmal beginnen</translation>
    </message>
    <message>
        <source>Sh&amp;ow</source>
        <translation>A&amp;nzeigen</translation>
    </message>
    <message>
        <source>Show each page that has changed</source>
        <translation>Jede geänderte Seite anzeigen</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>Take it back, files and links</source>
        <translation>Rückgängig machen, Dateien und Links</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>Close this line</source>
        <translation>Diese Zeile schließen</translation>
    </message>
</context>
<context>
    <name>LinkFindings</name>
    <message>
        <source>contains the name</source>
        <translation>enthält den Namen</translation>
    </message>
    <message>
        <source>not judged: server code</source>
        <translation>nicht beurteilt: Servercode</translation>
    </message>
</context>
<context>
    <name>LinkReportPanel</name>
    <message>
        <source>Missing links</source>
        <translation>Fehlende Links</translation>
    </message>
    <message>
        <source>&amp;Table</source>
        <translation>&amp;Tabelle</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Filter by page, link, problem or suggestion</source>
        <translation>Nach Seite, Link, Problem oder Vorschlag filtern</translation>
    </message>
    <message>
        <source>&amp;Group</source>
        <translation>&amp;Gruppieren</translation>
    </message>
    <message>
        <source>not grouped</source>
        <translation>nicht gruppiert</translation>
    </message>
    <message>
        <source>by page</source>
        <translation>nach Seite</translation>
    </message>
    <message>
        <source>by target</source>
        <translation>nach Ziel</translation>
    </message>
    <message>
        <source>Links</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>&amp;Log</source>
        <translation>&amp;Protokoll</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>&amp;Stopp</translation>
    </message>
    <message>
        <source>&amp;Restart</source>
        <translation>&amp;Neu starten</translation>
    </message>
    <message>
        <source>Re&amp;place Everywhere...</source>
        <translation>Überall &amp;ersetzen …</translation>
    </message>
    <message>
        <source>Points all links to the missing file of this row to another one</source>
        <translation>Lässt alle Links zur fehlenden Datei dieser Zeile auf eine andere zeigen</translation>
    </message>
    <message>
        <source>Sa&amp;ve As...</source>
        <translation>S&amp;ichern unter …</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
</context>
<context>
    <name>LinkSheet</name>
    <message>
        <source>Link</source>
        <translation>Link</translation>
    </message>
    <message>
        <source>&amp;Address:</source>
        <translation>&amp;Adresse:</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>&amp;Choose…</source>
        <translation>A&amp;uswählen …</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>MarkupSheet</name>
    <message>
        <source>Edit markup</source>
        <translation>Markup bearbeiten</translation>
    </message>
    <message>
        <source>Markup</source>
        <translation>Markup</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Ändern</translation>
    </message>
    <message>
        <source>Control+Enter</source>
        <translation>Strg+Eingabe</translation>
    </message>
</context>
<context>
    <name>MetaSheet</name>
    <message>
        <source>Page title</source>
        <translation>Seitentitel</translation>
    </message>
    <message>
        <source>Title:</source>
        <translation>Titel:</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>MoveRun</name>
    <message>
        <source>item</source>
        <translation>Objekt</translation>
    </message>
    <message>
        <source>items</source>
        <translation>Objekte</translation>
    </message>
    <message>
        <source>Changed the links to %1</source>
        <translation>Links zu %1 geändert</translation>
    </message>
    <message>
        <source>Copied %1 to %2</source>
        <translation>%1 nach %2 kopiert</translation>
    </message>
    <message>
        <source>Renamed %1 to %2</source>
        <translation>%1 in %2 umbenannt</translation>
    </message>
    <message>
        <source>Moved %1 to %2</source>
        <translation>%1 nach %2 verschoben</translation>
    </message>
    <message>
        <source>no page had to change</source>
        <translation>keine Seite musste geändert werden</translation>
    </message>
    <message>
        <source>%1 changed</source>
        <translation>%1 geändert</translation>
    </message>
    <message>
        <source>page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>%1 on %2 changed</source>
        <translation>%1 auf %2 geändert</translation>
    </message>
    <message>
        <source>link</source>
        <translation>Link</translation>
    </message>
    <message>
        <source>links</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>note</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>notes</source>
        <translation>Hinweise</translation>
    </message>
    <message>
        <source>Stopped; everything is as it was before.</source>
        <translation>Angehalten; alles ist, wie es vorher war.</translation>
    </message>
    <message>
        <source>Not done: %1</source>
        <translation>Nicht ausgeführt: %1</translation>
    </message>
    <message>
        <source>There was nothing to change.</source>
        <translation>Es war nichts zu ändern.</translation>
    </message>
    <message>
        <source>problem</source>
        <translation>Problem</translation>
    </message>
    <message>
        <source>problems</source>
        <translation>Probleme</translation>
    </message>
    <message>
        <source>Cancelled; everything is as it was before.</source>
        <translation>Abgebrochen; alles ist, wie es vorher war.</translation>
    </message>
    <message>
        <source>Took back: %1</source>
        <translation>Rückgängig gemacht: %1</translation>
    </message>
    <message>
        <source>Left as it is: %1</source>
        <translation>So gelassen: %1</translation>
    </message>
    <message>
        <source>Not taken back; everything is as it was before.</source>
        <translation>Nicht rückgängig gemacht; alles ist, wie es vorher war.</translation>
    </message>
    <message>
        <source>An interrupted move was finished or taken back.</source>
        <translation>Ein unterbrochenes Verschieben wurde beendet oder rückgängig gemacht.</translation>
    </message>
    <message>
        <source>stopped before all pages were looked at</source>
        <translation>angehalten, bevor alle Seiten angesehen waren</translation>
    </message>
    <message>
        <source>Stopped before anything was moved or copied.</source>
        <translation>Angehalten, bevor etwas verschoben oder kopiert war.</translation>
    </message>
    <message>
        <source>Stopped before all pages were looked at; links in the others are as they were.</source>
        <translation>Angehalten, bevor alle Seiten angesehen waren; die Links der anderen sind, wie sie waren.</translation>
    </message>
    <message>
        <source>Finished what was interrupted: %1</source>
        <translation>Zu Ende geführt, was unterbrochen war: %1</translation>
    </message>
    <message>
        <source>Took back what was interrupted: %1</source>
        <translation>Rückgängig gemacht, was unterbrochen war: %1</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Everything is as it was before.</source>
        <translation>Alles ist, wie es vorher war.</translation>
    </message>
    <message>
        <source>There is nothing to take back.</source>
        <translation>Es gibt nichts rückgängig zu machen.</translation>
    </message>
    <message>
        <source>%1 in %2 changed</source>
        <translation>%1 in %2 geändert</translation>
    </message>
    <message>
        <source>place</source>
        <translation>Stelle</translation>
    </message>
    <message>
        <source>places</source>
        <translation>Stellen</translation>
    </message>
    <message>
        <source>file</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>files</source>
        <translation>Dateien</translation>
    </message>
</context>
<context>
    <name>NewSiteAssistant</name>
    <message>
        <source>New site</source>
        <translation>Neue Website</translation>
    </message>
    <message>
        <source>Where are the pages?</source>
        <translation>Wo liegen die Seiten?</translation>
    </message>
    <message>
        <source>The folder on this computer in which you edit the site.</source>
        <translation>Der Ordner auf diesem Computer, in dem Sie die Website bearbeiten.</translation>
    </message>
    <message>
        <source>&amp;Folder</source>
        <translation>&amp;Ordner</translation>
    </message>
    <message>
        <source>&amp;Choose…</source>
        <translation>A&amp;uswählen …</translation>
    </message>
    <message>
        <source>Choose the folder of the pages</source>
        <translation>Ordner der Seiten auswählen</translation>
    </message>
    <message>
        <source>&amp;Name</source>
        <translation>&amp;Name</translation>
    </message>
    <message>
        <source>Where is the server?</source>
        <translation>Wo ist der Server?</translation>
    </message>
    <message>
        <source>The place that the site is published to. Your provider tells you these; a local folder will do, too.</source>
        <translation>Der Ort, an dem die Website veröffentlicht wird. Die Angaben erhalten Sie vom Anbieter; ein lokaler Ordner geht auch.</translation>
    </message>
    <message>
        <source>P&amp;rotocol</source>
        <translation>P&amp;rotokoll</translation>
    </message>
    <message>
        <source>&amp;Server</source>
        <translation>&amp;Server</translation>
    </message>
    <message>
        <source>www.example.org</source>
        <translation>www.example.org</translation>
    </message>
    <message>
        <source>S&amp;hare</source>
        <translation>Frei&amp;gabe</translation>
    </message>
    <message>
        <source>Fol&amp;der</source>
        <translation>Or&amp;dner</translation>
    </message>
    <message>
        <source>Choose the folder to publish to</source>
        <translation>Zielordner der Veröffentlichung auswählen</translation>
    </message>
    <message>
        <source>&amp;User</source>
        <translation>&amp;Benutzer</translation>
    </message>
    <message>
        <source>&amp;Password</source>
        <translation>&amp;Passwort</translation>
    </message>
    <message>
        <source>&amp;Test Connection</source>
        <translation>&amp;Verbindung testen</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>All of this can be changed later in the list of sites.</source>
        <translation>Das alles lässt sich später in der Liste der Websites ändern.</translation>
    </message>
    <message>
        <source>&amp;Open the site now</source>
        <translation>Website jetzt ö&amp;ffnen</translation>
    </message>
</context>
<context>
    <name>PlanPreview</name>
    <message>
        <source>Change links</source>
        <translation>Links ändern</translation>
    </message>
    <message>
        <source>Links that change</source>
        <translation>Links, die sich ändern</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>&amp;Change Links</source>
        <translation>Links ä&amp;ndern</translation>
    </message>
</context>
<context>
    <name>PreferencesDialog</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Links</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>&amp;Links are read</source>
        <translation>&amp;Links werden gelesen</translation>
    </message>
    <message>
        <source>as a browser reads them</source>
        <translation>wie ein Browser sie liest</translation>
    </message>
    <message>
        <source>letter by letter</source>
        <translation>Buchstabe für Buchstabe</translation>
    </message>
    <message>
        <source>Letter by letter decodes nothing and asks for a file of exactly that name.</source>
        <translation>Buchstabe für Buchstabe entschlüsselt nichts und sucht eine Datei mit genau diesem Namen.</translation>
    </message>
    <message>
        <source>&amp;Index pages</source>
        <translation>&amp;Indexseiten</translation>
    </message>
    <message>
        <source>The pages that a link to a folder leads to, separated by commas. Empty: the usual names.</source>
        <translation>Die Seiten, zu denen ein Link auf einen Ordner führt, durch Kommas getrennt. Leer: die üblichen Namen.</translation>
    </message>
    <message>
        <source>&amp;Extensions may be left out</source>
        <translation>&amp;Endungen dürfen fehlen</translation>
    </message>
    <message>
        <source>“about” then leads to about.html, as many servers are set up.</source>
        <translation>„about“ führt dann zu about.html, wie auf vielen Servern.</translation>
    </message>
    <message>
        <source>&amp;Check places in pages</source>
        <translation>&amp;Stellen in Seiten prüfen</translation>
    </message>
    <message>
        <source>A link to “page.html#name” counts as missing if the page has no such place.</source>
        <translation>Ein Link auf „page.html#name“ gilt als fehlend, wenn die Seite keine solche Stelle hat.</translation>
    </message>
    <message>
        <source>E&amp;xcluded folders</source>
        <translation>Ausgeschlossene &amp;Ordner</translation>
    </message>
    <message>
        <source>Folder names, separated by commas, that the search for unlinked items leaves out.</source>
        <translation>Durch Kommas getrennte Namen von Ordnern, die die Suche nach unverlinkten Dateien auslässt.</translation>
    </message>
    <message>
        <source>Moves</source>
        <translation>Bewegen</translation>
    </message>
    <message>
        <source>&amp;Ask before changing links on more than</source>
        <translation>&amp;Fragen vor Änderungen an Links auf mehr als</translation>
    </message>
    <message>
        <source>Pages that change unasked</source>
        <translation>Seiten, die ohne Rückfrage geändert werden</translation>
    </message>
    <message>
        <source> pages</source>
        <translation> Seiten</translation>
    </message>
    <message>
        <source>The links are shown with their new addresses before anything is moved.</source>
        <translation>Die Links werden mit ihren neuen Adressen gezeigt, bevor etwas bewegt wird.</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>&amp;Tidy every page when it is saved</source>
        <translation>&amp;Jede Seite beim Sichern ordnen</translation>
    </message>
    <message>
        <source>Prints the whole source of a page anew at each save. Otherwise only what was edited changes.</source>
        <translation>Schreibt den ganzen Quelltext einer Seite bei jedem Sichern neu. Sonst ändert sich nur, was bearbeitet wurde.</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation>&amp;Sprache</translation>
    </message>
    <message>
        <source>Of menus, windows and messages, from the next start of LUMA.</source>
        <translation>Für Menüs, Fenster und Meldungen, ab dem nächsten Start von LUMA.</translation>
    </message>
    <message>
        <source>&amp;Open the sites of last time at the start</source>
        <translation>Beim Sta&amp;rt die zuletzt geöffneten Websites öffnen</translation>
    </message>
    <message>
        <source>The windows of the sites that are open when you quit come back.</source>
        <translation>Die Fenster der Websites, die beim Beenden offen sind, erscheinen wieder.</translation>
    </message>
    <message>
        <source>Publishing</source>
        <translation>Veröffentlichen</translation>
    </message>
    <message>
        <source>&amp;Keep old versions</source>
        <translation>&amp;Alte Fassungen behalten</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source> days</source>
        <translation> Tage</translation>
    </message>
    <message>
        <source>What an upload replaces or deletes is kept beside the published folder. For new sites; the list of sites changes it for one that you have.</source>
        <translation>Was ein Hochladen ersetzt oder löscht, wird neben dem veröffentlichten Ordner aufgehoben. Gilt für neue Websites; für eine vorhandene steht es in der Liste der Websites.</translation>
    </message>
    <message>
        <source>&amp;Never publish</source>
        <translation>&amp;Nie veröffentlichen</translation>
    </message>
    <message>
        <source>Names or patterns of files and folders, one a line, such as *.psd or drafts/. For new sites, too.</source>
        <translation>Namen oder Muster von Dateien und Ordnern, je Zeile eines, zum Beispiel *.psd oder entwuerfe/. Gilt auch für neue Websites.</translation>
    </message>
    <message>
        <source>&amp;Folder of templates</source>
        <translation>&amp;Ordner der Vorlagen</translation>
    </message>
    <message>
        <source>&amp;Choose...</source>
        <translation>&amp;Wählen ...</translation>
    </message>
    <message>
        <source>Choose the folder of templates</source>
        <translation>Ordner der Vorlagen wählen</translation>
    </message>
    <message>
        <source>The pages that “New Page from Template” offers.</source>
        <translation>Die Seiten, die „Neue Seite aus Vorlage“ anbietet.</translation>
    </message>
</context>
<context>
    <name>ProgressPanel</name>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>&amp;Copy all</source>
        <translation>&amp;Alles kopieren</translation>
    </message>
    <message>
        <source>Save as &amp;text...</source>
        <translation>Als &amp;Text sichern …</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>&amp;Stopp</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>&amp;Go On</source>
        <translation>&amp;Weiter</translation>
    </message>
    <message>
        <source>Begin the stopped job once more</source>
        <translation>Den angehaltenen Vorgang noch einmal beginnen</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Untitled</source>
        <translation>Unbenannt</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Sichern</translation>
    </message>
    <message>
        <source>Another program has changed “%1” since it was read.</source>
        <translation>Ein anderes Programm hat „%1“ seit dem Lesen geändert.</translation>
    </message>
    <message>
        <source>Saving replaces that version with yours.</source>
        <translation>Sichern ersetzt jene Fassung durch Ihre.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Update Links</source>
        <translation>Links anpassen</translation>
    </message>
    <message>
        <source>Edit Source</source>
        <translation>Quelltext bearbeiten</translation>
    </message>
    <message>
        <source>Tidy Page Source</source>
        <translation>Quelltext ordnen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Typing</source>
        <translation>Tippen</translation>
    </message>
    <message>
        <source>Unsaved Edits</source>
        <translation>Nicht gesicherte Änderungen</translation>
    </message>
</context>
<context>
    <name>RestorePanel</name>
    <message>
        <source>Restore from last publish</source>
        <translation>Letzte Veröffentlichung zurücknehmen</translation>
    </message>
    <message>
        <source>&amp;Put back what this publish replaced or deleted:</source>
        <translation>&amp;Zurückholen, was diese Veröffentlichung ersetzt oder gelöscht hat:</translation>
    </message>
    <message>
        <source>Old versions</source>
        <translation>Alte Fassungen</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Put &amp;Back</source>
        <translation>Zurück&amp;holen</translation>
    </message>
</context>
<context>
    <name>ScriptConsole</name>
    <message>
        <source>Script console</source>
        <translation>Skriptkonsole</translation>
    </message>
    <message>
        <source>Script</source>
        <translation>Skript</translation>
    </message>
    <message>
        <source>A script that is evaluated in the page</source>
        <translation>Ein Skript, das in der Seite ausgewertet wird</translation>
    </message>
    <message>
        <source>Answer</source>
        <translation>Antwort</translation>
    </message>
    <message>
        <source>&amp;Save script</source>
        <translation>Skript &amp;sichern</translation>
    </message>
    <message>
        <source>&amp;Run</source>
        <translation>&amp;Ausführen</translation>
    </message>
    <message>
        <source>Control+Return</source>
        <translation>Steuerung+Eingabe</translation>
    </message>
</context>
<context>
    <name>SiteFindPanel</name>
    <message>
        <source>Find in site</source>
        <translation>In der Website suchen</translation>
    </message>
    <message>
        <source>Fi&amp;nd</source>
        <translation>Such&amp;text</translation>
    </message>
    <message>
        <source>Match case</source>
        <translation>Groß- und Kleinschreibung beachten</translation>
    </message>
    <message>
        <source>Whole words</source>
        <translation>Ganze Wörter</translation>
    </message>
    <message>
        <source>Regular expression</source>
        <translation>Regulärer Ausdruck</translation>
    </message>
    <message>
        <source>Regular expression; $1 stands for the first group in the replacement</source>
        <translation>Regulärer Ausdruck; $1 steht in der Ersetzung für die erste Gruppe</translation>
    </message>
    <message>
        <source>&amp;Find</source>
        <translation>S&amp;uchen</translation>
    </message>
    <message>
        <source>&amp;Replace with</source>
        <translation>E&amp;rsetzen durch</translation>
    </message>
    <message>
        <source>Replace with</source>
        <translation>Ersetzen durch</translation>
    </message>
    <message>
        <source>R&amp;eplace</source>
        <translation>&amp;Ersetzen</translation>
    </message>
    <message>
        <source>Replaces the ticked places. Edit &gt; Undo in the site&apos;s window takes it back</source>
        <translation>Ersetzt die angehakten Stellen. Bearbeiten &gt; Rückgängig im Fenster der Website nimmt es zurück</translation>
    </message>
    <message>
        <source>&amp;In</source>
        <translation>&amp;In</translation>
    </message>
    <message>
        <source>text as shown</source>
        <translation>Text, wie er erscheint</translation>
    </message>
    <message>
        <source>source</source>
        <translation>Quelltext</translation>
    </message>
    <message>
        <source>&amp;Pages</source>
        <translation>&amp;Seiten</translation>
    </message>
    <message>
        <source>&amp;Style sheets</source>
        <translation>St&amp;ylesheets</translation>
    </message>
    <message>
        <source>S&amp;cripts</source>
        <translation>S&amp;kripte</translation>
    </message>
    <message>
        <source>Fo&amp;lder</source>
        <translation>&amp;Ordner</translation>
    </message>
    <message>
        <source>whole site</source>
        <translation>ganze Website</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filtern</translation>
    </message>
    <message>
        <source>Filter by file or text</source>
        <translation>Nach Datei oder Text filtern</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Stellen</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>S&amp;top</source>
        <translation>S&amp;topp</translation>
    </message>
    <message>
        <source>Cl&amp;ose</source>
        <translation>S&amp;chließen</translation>
    </message>
</context>
<context>
    <name>SiteForm</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Open site</source>
        <translation>Website öffnen</translation>
    </message>
    <message>
        <source>Show both sides of this site in a window</source>
        <translation>Beide Seiten dieser Website in einem Fenster zeigen</translation>
    </message>
    <message>
        <source>Web address</source>
        <translation>Webadresse</translation>
    </message>
    <message>
        <source>https://example.org</source>
        <translation>https://example.org</translation>
    </message>
    <message>
        <source>Where visitors find this site. Links with this address count as links within the site. Several addresses: blanks between.</source>
        <translation>Wo Besucher diese Website finden. Links mit dieser Adresse gelten als Links innerhalb der Website. Mehrere Adressen durch Leerzeichen trennen.</translation>
    </message>
    <message>
        <source>Never publish</source>
        <translation>Nie veröffentlichen</translation>
    </message>
    <message>
        <source>*.psd
drafts/</source>
        <translation>*.psd
entwuerfe/</translation>
    </message>
    <message>
        <source>One pattern a line: for names, with a slash for paths below the site&apos;s folder, with a slash at the end for folders only. Version control folders, editors&apos; backups and Thumbs.db are never published.</source>
        <translation>Ein Muster je Zeile: für Namen; mit Schrägstrich für Pfade unterhalb des Ordners der Website; mit Schrägstrich am Ende nur für Ordner. Ordner der Versionsverwaltung, Sicherungskopien von Editoren und Thumbs.db werden nie veröffentlicht.</translation>
    </message>
    <message>
        <source>Keep old versions</source>
        <translation>Alte Fassungen behalten</translation>
    </message>
    <message>
        <source>What publishing replaces or deletes can be put back for so long.</source>
        <translation>So lange lässt sich zurückholen, was eine Veröffentlichung ersetzt oder löscht.</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source> days</source>
        <translation> Tage</translation>
    </message>
    <message>
        <source>Folder for old versions</source>
        <translation>Ordner für alte Fassungen</translation>
    </message>
    <message>
        <source>Beside the destination folder</source>
        <translation>Neben dem Zielordner</translation>
    </message>
    <message>
        <source>An absolute path on the destination&apos;s side, outside of its folder. Needed where the place beside it can&apos;t be written.</source>
        <translation>Ein absoluter Pfad auf der Seite des Ziels, außerhalb seines Ordners. Nötig, wenn der Platz daneben nicht beschreibbar ist.</translation>
    </message>
</context>
<context>
    <name>SiteListWindow</name>
    <message>
        <source>LUMA</source>
        <translation>LUMA</translation>
    </message>
    <message>
        <source>Search sites</source>
        <translation>Websites suchen</translation>
    </message>
    <message>
        <source>Sites</source>
        <translation>Websites</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Add a site</source>
        <translation>Eine Website hinzufügen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Remove the selected site from the list; its files stay</source>
        <translation>Die ausgewählte Website aus der Liste entfernen; ihre Dateien bleiben</translation>
    </message>
    <message>
        <source>LUMA edits a web site in a folder of yours and publishes it to a server.</source>
        <translation>LUMA bearbeitet eine Website in einem Ihrer Ordner und veröffentlicht sie auf einem Server.</translation>
    </message>
    <message>
        <source>&amp;New site…</source>
        <translation>&amp;Neue Website …</translation>
    </message>
    <message>
        <source>Open the sam&amp;ple site</source>
        <translation>&amp;Beispielwebsite öffnen</translation>
    </message>
    <message>
        <source>Copies a small site into your documents, to try things out</source>
        <translation>Kopiert eine kleine Website in Ihre Dokumente, zum Ausprobieren</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Site</source>
        <translation>&amp;Website</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Windows</source>
        <translation>&amp;Fenster</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Preferences…</source>
        <translation>&amp;Einstellungen …</translation>
    </message>
    <message>
        <source>Ctrl+,</source>
        <translation>Ctrl+,</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>Ctrl+W</source>
        <translation>Ctrl+W</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>Ctrl+Q</source>
        <translation>Ctrl+Q</translation>
    </message>
    <message>
        <source>&amp;Open site</source>
        <translation>Website ö&amp;ffnen</translation>
    </message>
    <message>
        <source>Ctrl+O</source>
        <translation>Ctrl+O</translation>
    </message>
    <message>
        <source>Ctrl+N</source>
        <translation>Ctrl+N</translation>
    </message>
    <message>
        <source>&amp;Import sites…</source>
        <translation>Websites &amp;importieren …</translation>
    </message>
    <message>
        <source>&amp;Export sites…</source>
        <translation>Websites e&amp;xportieren …</translation>
    </message>
    <message>
        <source>D&amp;uplicate site</source>
        <translation>Website d&amp;uplizieren</translation>
    </message>
    <message>
        <source>Ctrl+D</source>
        <translation>Ctrl+D</translation>
    </message>
    <message>
        <source>Sor&amp;t by name</source>
        <translation>Nach Namen s&amp;ortieren</translation>
    </message>
    <message>
        <source>&amp;Remove site…</source>
        <translation>Website &amp;entfernen …</translation>
    </message>
    <message>
        <source>Ctrl+Backspace</source>
        <translation>Ctrl+Backspace</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>Ctrl+Z</source>
        <translation>Ctrl+Z</translation>
    </message>
    <message>
        <source>Choose &amp;source folder…</source>
        <translation>&amp;Quellordner auswählen …</translation>
    </message>
    <message>
        <source>Ctrl+Shift+S</source>
        <translation>Ctrl+Shift+S</translation>
    </message>
    <message>
        <source>Choose &amp;destination folder…</source>
        <translation>&amp;Zielordner auswählen …</translation>
    </message>
    <message>
        <source>Ctrl+Shift+D</source>
        <translation>Ctrl+Shift+D</translation>
    </message>
    <message>
        <source>&amp;Search sites</source>
        <translation>Websites &amp;suchen</translation>
    </message>
    <message>
        <source>Ctrl+F</source>
        <translation>Ctrl+F</translation>
    </message>
    <message>
        <source>&amp;Product page</source>
        <translation>&amp;Produktseite</translation>
    </message>
    <message>
        <source>Check for &amp;updates…</source>
        <translation>Nach &amp;Aktualisierungen suchen …</translation>
    </message>
    <message>
        <source>Move to &amp;folder</source>
        <translation>&amp;In Ordner bewegen</translation>
    </message>
    <message>
        <source>New fo&amp;lder</source>
        <translation>Neuer Or&amp;dner</translation>
    </message>
    <message>
        <source>Ctrl+Shift+N</source>
        <translation>Ctrl+Shift+N</translation>
    </message>
    <message>
        <source>R&amp;ename folder</source>
        <translation>O&amp;rdner umbenennen</translation>
    </message>
    <message>
        <source>Remo&amp;ve folder, keep its sites</source>
        <translation>Ordner entfernen, &amp;Websites behalten</translation>
    </message>
    <message>
        <source>&amp;Move up</source>
        <translation>Nach &amp;oben bewegen</translation>
    </message>
    <message>
        <source>Alt+Up</source>
        <translation>Alt+Up</translation>
    </message>
    <message>
        <source>Move do&amp;wn</source>
        <translation>Nach un&amp;ten bewegen</translation>
    </message>
    <message>
        <source>Alt+Down</source>
        <translation>Alt+Down</translation>
    </message>
</context>
<context>
    <name>SiteNamesPanel</name>
    <message>
        <source>Classes and IDs</source>
        <translation>Klassen und IDs</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filtern</translation>
    </message>
    <message>
        <source>Filter by name</source>
        <translation>Nach Namen filtern</translation>
    </message>
    <message>
        <source>&amp;Show</source>
        <translation>&amp;Zeigen</translation>
    </message>
    <message>
        <source>all</source>
        <translation>alle</translation>
    </message>
    <message>
        <source>unused</source>
        <translation>unbenutzte</translation>
    </message>
    <message>
        <source>without a rule</source>
        <translation>ohne Regel</translation>
    </message>
    <message>
        <source>classes</source>
        <translation>Klassen</translation>
    </message>
    <message>
        <source>ids</source>
        <translation>IDs</translation>
    </message>
    <message>
        <source>Classes and ids</source>
        <translation>Klassen und IDs</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>&amp;Rename...</source>
        <translation>&amp;Umbenennen …</translation>
    </message>
    <message>
        <source>Renames the class or id in all pages and style sheets</source>
        <translation>Benennt die Klasse oder ID in allen Seiten und Stylesheets um</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
</context>
<context>
    <name>SourcePanel</name>
    <message>
        <source>Page source</source>
        <translation>Quelltext der Seite</translation>
    </message>
    <message>
        <source>&amp;Find:</source>
        <translation>&amp;Suchen:</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>&amp;Previous</source>
        <translation>&amp;Zurück</translation>
    </message>
    <message>
        <source>&amp;Next</source>
        <translation>&amp;Weiter</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Sichern</translation>
    </message>
    <message>
        <source>Show &amp;Line</source>
        <translation>Zeile &amp;anzeigen</translation>
    </message>
</context>
<context>
    <name>SyncPanel</name>
    <message>
        <source>Upload and download</source>
        <translation>Hochladen und Herunterladen</translation>
    </message>
    <message>
        <source>Filter by name</source>
        <translation>Nach Namen filtern</translation>
    </message>
    <message>
        <source>Filter by folder or name</source>
        <translation>Nach Ordner oder Namen filtern</translation>
    </message>
    <message>
        <source>Changed files</source>
        <translation>Geänderte Dateien</translation>
    </message>
    <message>
        <source>&amp;Delete files that only the receiving side has</source>
        <translation>Dateien &amp;löschen, die nur die Empfängerseite hat</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>D&amp;irection</source>
        <translation>R&amp;ichtung</translation>
    </message>
    <message>
        <source>&amp;Show</source>
        <translation>An&amp;zeigen</translation>
    </message>
</context>
<context>
    <name>TableSheet</name>
    <message>
        <source>Insert table</source>
        <translation>Tabelle einfügen</translation>
    </message>
    <message>
        <source>&amp;Rows:</source>
        <translation>&amp;Zeilen:</translation>
    </message>
    <message>
        <source>Rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>&amp;Columns:</source>
        <translation>&amp;Spalten:</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>The first row is a &amp;header</source>
        <translation>Die erste Zeile ist ein &amp;Kopf</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Insert Table</source>
        <translation>Tabelle einfügen</translation>
    </message>
</context>
<context>
    <name>TemplateSheet</name>
    <message>
        <source>New Page from Template</source>
        <translation>Neue Seite aus Vorlage</translation>
    </message>
    <message>
        <source>Your templates:</source>
        <translation>Ihre Vorlagen:</translation>
    </message>
    <message>
        <source>Templates</source>
        <translation>Vorlagen</translation>
    </message>
    <message>
        <source>There are no templates yet. “File &gt; Save as Template” makes one of a page.</source>
        <translation>Es gibt noch keine Vorlagen. „Datei &gt; Als Vorlage sichern“ macht eine aus einer Seite.</translation>
    </message>
    <message>
        <source>Open Folder</source>
        <translation>Ordner öffnen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Make Page</source>
        <translation>Seite anlegen</translation>
    </message>
    <message>
        <source>Pictures, style sheets and other files that lie in the folder of templates</source>
        <translation>Bilder, Stylesheets und andere Dateien, die im Ordner der Vorlagen liegen</translation>
    </message>
    <message>
        <source>&amp;Copy the files that it uses into the site</source>
        <translation>&amp;Dateien, die sie verwendet, in die Website kopieren</translation>
    </message>
</context>
<context>
    <name>TickList</name>
    <message>
        <source>&amp;All</source>
        <translation>&amp;Alle</translation>
    </message>
</context>
<context>
    <name>UnlinkedItemsPanel</name>
    <message>
        <source>Unlinked items</source>
        <translation>Unverlinkte Dateien</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>&amp;Stopp</translation>
    </message>
    <message>
        <source>&amp;Restart</source>
        <translation>&amp;Neu starten</translation>
    </message>
    <message>
        <source>&amp;Put Back</source>
        <translation>&amp;Zurückholen</translation>
    </message>
    <message>
        <source>Moves the files deleted here back from the trash</source>
        <translation>Holt die hier gelöschten Dateien aus dem Papierkorb zurück</translation>
    </message>
    <message>
        <source>&amp;Delete...</source>
        <translation>&amp;Löschen …</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
</context>
<context>
    <name>luma::AttributesModel</name>
    <message>
        <source>Attribute</source>
        <translation>Attribut</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
</context>
<context>
    <name>luma::AttributesPanel</name>
    <message>
        <source>Attributes of &lt;%1&gt;</source>
        <translation>Attribute von &lt;%1&gt;</translation>
    </message>
    <message>
        <source>Attributes</source>
        <translation>Attribute</translation>
    </message>
    <message>
        <source>Edit Link...</source>
        <translation>Link bearbeiten …</translation>
    </message>
    <message>
        <source>Make Link...</source>
        <translation>Link erstellen …</translation>
    </message>
    <message>
        <source>Change Size</source>
        <translation>Größe ändern</translation>
    </message>
</context>
<context>
    <name>luma::BoxPanel</name>
    <message>
        <source>An element within lines takes its size from its contents</source>
        <translation>Ein Element innerhalb von Zeilen ist so groß wie sein Inhalt</translation>
    </message>
    <message>
        <source>The size in the style sheet counts padding and border, too</source>
        <translation>Die Größe im Stylesheet zählt Innenabstand und Rahmen mit</translation>
    </message>
    <message>
        <source>“%1” is no value of %2.</source>
        <translation>„%1“ ist kein Wert von %2.</translation>
    </message>
    <message>
        <source>Change Style</source>
        <translation>Stil ändern</translation>
    </message>
    <message>
        <source>Remove Style</source>
        <translation>Stil entfernen</translation>
    </message>
    <message>
        <source>Add Style</source>
        <translation>Stil hinzufügen</translation>
    </message>
</context>
<context>
    <name>luma::BrowserColumn</name>
    <message>
        <source>Contents of %1</source>
        <translation>Inhalt von %1</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>This folder cannot be read.</source>
        <translation>Dieser Ordner kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Empty folder</source>
        <translation>Leerer Ordner</translation>
    </message>
    <message>
        <source>Reading the folder…</source>
        <translation>Der Ordner wird gelesen …</translation>
    </message>
</context>
<context>
    <name>luma::BrowserController</name>
    <message>
        <source>Connection settings of %1</source>
        <translation>Verbindungseinstellungen: %1</translation>
    </message>
    <message>
        <source>Another program has moved %1 to %2. Links still lead to the old place.</source>
        <translation>Ein anderes Programm hat %1 nach %2 bewegt. Links führen noch zum alten Ort.</translation>
    </message>
    <message>
        <source>Another program has moved %1 items. Links still lead to the old places.</source>
        <translation>Ein anderes Programm hat %1 Objekte bewegt. Links führen noch zu den alten Orten.</translation>
    </message>
    <message>
        <source>Connecting... Please wait.</source>
        <translation>Verbindung wird aufgebaut. Bitte warten.</translation>
    </message>
    <message>
        <source>Connecting...</source>
        <translation>Verbindung wird aufgebaut …</translation>
    </message>
    <message>
        <source>There is an error connecting to the Destination Server</source>
        <translation>Fehler beim Verbinden mit dem Zielserver</translation>
    </message>
    <message>
        <source>Not connected. Choose Connect, or set the folder in the connection settings.</source>
        <translation>Nicht verbunden. Wählen Sie „Verbinden“, oder stellen Sie den Ordner in den Verbindungseinstellungen ein.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%2: %1</translation>
    </message>
    <message>
        <source>Relative Path: </source>
        <translation>Relativer Pfad: </translation>
    </message>
    <message>
        <source>There are no files on the clipboard.</source>
        <translation>In der Zwischenablage sind keine Dateien.</translation>
    </message>
</context>
<context>
    <name>luma::BrowserListView</name>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
</context>
<context>
    <name>luma::CharacterSheet</name>
    <message>
        <source>Punctuation</source>
        <translation>Satzzeichen</translation>
    </message>
    <message>
        <source>Arrows</source>
        <translation>Pfeile</translation>
    </message>
    <message>
        <source>Currency</source>
        <translation>Währungen</translation>
    </message>
    <message>
        <source>Mathematics</source>
        <translation>Mathematik</translation>
    </message>
    <message>
        <source>Greek letters</source>
        <translation>Griechische Buchstaben</translation>
    </message>
    <message>
        <source>Letters with accents</source>
        <translation>Buchstaben mit Akzenten</translation>
    </message>
    <message>
        <source>Symbols</source>
        <translation>Symbole</translation>
    </message>
    <message>
        <source>Recently inserted</source>
        <translation>Zuletzt eingefügt</translation>
    </message>
    <message>
        <source>No character has this name.</source>
        <translation>Kein Zeichen hat diesen Namen.</translation>
    </message>
</context>
<context>
    <name>luma::CheckPanel</name>
    <message>
        <source>The page has no title</source>
        <translation>Die Seite hat keinen Titel</translation>
    </message>
    <message>
        <source>The page does not say its language (lang)</source>
        <translation>Die Seite nennt ihre Sprache nicht (lang)</translation>
    </message>
    <message>
        <source>Image without alternative text</source>
        <translation>Bild ohne Alternativtext</translation>
    </message>
    <message>
        <source>The id &quot;%1&quot; is used more than once</source>
        <translation>Die id „%1“ kommt mehrmals vor</translation>
    </message>
    <message>
        <source>Heading levels are left out: %1</source>
        <translation>Überschriftenebenen sind ausgelassen: %1</translation>
    </message>
    <message>
        <source>Link without text</source>
        <translation>Link ohne Text</translation>
    </message>
    <message>
        <source>Button without text</source>
        <translation>Schaltfläche ohne Text</translation>
    </message>
    <message>
        <source>Missing link: %1</source>
        <translation>Fehlender Link: %1</translation>
    </message>
    <message>
        <source>Contrast of the text is %1:1, %2:1 is needed</source>
        <translation>Der Kontrast des Textes ist %1:1, nötig ist %2:1</translation>
    </message>
    <message>
        <source>Checking...</source>
        <translation>Wird geprüft …</translation>
    </message>
    <message>
        <source>No problems found</source>
        <translation>Keine Probleme gefunden</translation>
    </message>
    <message>
        <source>Problems: %1</source>
        <translation>Probleme: %1</translation>
    </message>
    <message>
        <source>Problems: %1, the first %2 are listed</source>
        <translation>Probleme: %1, gezeigt werden die ersten %2</translation>
    </message>
</context>
<context>
    <name>luma::ClassSheet</name>
    <message>
        <source>The page or one of its style sheets has this class already.</source>
        <translation>Die Seite oder eines ihrer Stylesheets hat diese Klasse bereits.</translation>
    </message>
    <message>
        <source>Another page or style sheet of the site has this class already.</source>
        <translation>Eine andere Seite oder ein anderes Stylesheet der Site hat diese Klasse schon.</translation>
    </message>
    <message>
        <source>The site&apos;s classes are being read...</source>
        <translation>Die Klassen der Site werden gelesen ...</translation>
    </message>
</context>
<context>
    <name>luma::ComparisonWindow</name>
    <message>
        <source>The files are too large to be shown</source>
        <translation>Die Dateien sind zu groß, um gezeigt zu werden</translation>
    </message>
    <message>
        <source>The files are no text</source>
        <translation>Die Dateien sind kein Text</translation>
    </message>
    <message>
        <source>Comparing</source>
        <translation>Vergleich läuft</translation>
    </message>
    <message>
        <source>&amp;Previous Difference</source>
        <translation>&amp;Vorheriger Unterschied</translation>
    </message>
    <message>
        <source>&amp;Next Difference</source>
        <translation>&amp;Nächster Unterschied</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Only the ends of lines differ</source>
        <translation>Nur die Zeilenenden unterscheiden sich</translation>
    </message>
    <message>
        <source>The texts are the same</source>
        <translation>Die Texte sind gleich</translation>
    </message>
    <message>
        <source>difference</source>
        <translation>Unterschied</translation>
    </message>
    <message>
        <source>differences</source>
        <translation>Unterschiede</translation>
    </message>
</context>
<context>
    <name>luma::ConfigPanel</name>
    <message>
        <source>S&amp;hare:</source>
        <translation>Frei&amp;gabe:</translation>
    </message>
    <message>
        <source>&amp;Volume:</source>
        <translation>Frei&amp;gabe:</translation>
    </message>
    <message>
        <source>Choose the site&apos;s folder</source>
        <translation>Ordner der Website auswählen</translation>
    </message>
</context>
<context>
    <name>luma::ConsoleRuns</name>
    <message>
        <source>Script</source>
        <translation>Skript</translation>
    </message>
    <message>
        <source>The script was stopped, as it did not end within %1 seconds. The page is shown as it was before.</source>
        <translation>Das Skript wurde angehalten, weil es nicht innerhalb von %1 Sekunden endete. Die Seite wird gezeigt, wie sie vorher war.</translation>
    </message>
</context>
<context>
    <name>luma::CssCheck</name>
    <message>
        <source>The web engine knows no property “%1”.</source>
        <translation>Die Web-Engine kennt keine Eigenschaft „%1“.</translation>
    </message>
    <message>
        <source>“%1” has no value.</source>
        <translation>„%1“ hat keinen Wert.</translation>
    </message>
    <message>
        <source>“%1” takes no value “%2”.</source>
        <translation>„%1“ nimmt keinen Wert „%2“ an.</translation>
    </message>
    <message>
        <source>The web engine can&apos;t read this selector and leaves out the rule.</source>
        <translation>Die Web-Engine kann diesen Selektor nicht lesen und lässt die Regel aus.</translation>
    </message>
    <message>
        <source>1 problem</source>
        <translation>1 Fehler</translation>
    </message>
    <message>
        <source>%1 problems</source>
        <translation>%1 Fehler</translation>
    </message>
    <message>
        <source>%1 (and %2 more)</source>
        <translation>%1 (und %2 weitere)</translation>
    </message>
</context>
<context>
    <name>luma::CssCompletion</name>
    <message>
        <source>Completions</source>
        <translation>Vervollständigungen</translation>
    </message>
</context>
<context>
    <name>luma::CssEdits</name>
    <message>
        <source>This is not one value of a style sheet.</source>
        <translation>Das ist kein einzelner Wert eines Stylesheets.</translation>
    </message>
    <message>
        <source>A comment stands in this declaration, so it can&apos;t be switched off.</source>
        <translation>In dieser Deklaration steht ein Kommentar, daher lässt sie sich nicht ausschalten.</translation>
    </message>
    <message>
        <source>Type a property and its value, such as “color: red”.</source>
        <translation>Geben Sie eine Eigenschaft und ihren Wert ein, etwa „color: red“.</translation>
    </message>
</context>
<context>
    <name>luma::CssTexts</name>
    <message>
        <source>This comment is not closed.</source>
        <translation>Dieser Kommentar ist nicht geschlossen.</translation>
    </message>
    <message>
        <source>This text is not closed.</source>
        <translation>Dieser Text ist nicht geschlossen.</translation>
    </message>
    <message>
        <source>“%1” closes nothing.</source>
        <translation>„%1“ schließt nichts.</translation>
    </message>
    <message>
        <source>“%1” is no declaration: it has no colon.</source>
        <translation>„%1“ ist keine Deklaration: Der Doppelpunkt fehlt.</translation>
    </message>
    <message>
        <source>This “%1” is not closed.</source>
        <translation>Dieses „%1“ ist nicht geschlossen.</translation>
    </message>
</context>
<context>
    <name>luma::DeletionAlert</name>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>%1 can&apos;t be moved to the trash:
%2
Delete for good? This can&apos;t be undone.</source>
        <translation>%1 kann nicht in den Papierkorb bewegt werden:
%2
Endgültig löschen? Das lässt sich nicht zurücknehmen.</translation>
    </message>
    <message>
        <source>“%1”</source>
        <translation>„%1“</translation>
    </message>
    <message>
        <source>%1 and %2 more</source>
        <translation>%1 und %2 weitere</translation>
    </message>
</context>
<context>
    <name>luma::EditMenu</name>
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
        <translation>Einset&amp;zen</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>Alles aus&amp;wählen</translation>
    </message>
</context>
<context>
    <name>luma::ElementAttributes</name>
    <message>
        <source>“%1” is not a number.</source>
        <translation>„%1“ ist keine Zahl.</translation>
    </message>
</context>
<context>
    <name>luma::ElementChange</name>
    <message>
        <source>“%1” is not the name of an attribute.</source>
        <translation>„%1“ ist kein Name eines Attributs.</translation>
    </message>
    <message>
        <source>&lt;%1&gt; has an attribute %2 already.</source>
        <translation>&lt;%1&gt; hat schon ein Attribut %2.</translation>
    </message>
    <message>
        <source>Another element has the ID %1 already.</source>
        <translation>Ein anderes Element hat schon die ID %1.</translation>
    </message>
    <message>
        <source>“%1” is not the name of a tag.</source>
        <translation>„%1“ ist kein Name eines Tags.</translation>
    </message>
    <message>
        <source>A page needs its &lt;%1&gt;.</source>
        <translation>Eine Seite braucht ihr &lt;%1&gt;.</translation>
    </message>
    <message>
        <source>&lt;%1&gt; can&apos;t stand here, or not with these contents.</source>
        <translation>&lt;%1&gt; kann hier nicht stehen oder nicht mit diesem Inhalt.</translation>
    </message>
    <message>
        <source>This is edited in the page&apos;s source.</source>
        <translation>Das wird im Quelltext der Seite bearbeitet.</translation>
    </message>
</context>
<context>
    <name>luma::ElementOffers</name>
    <message>
        <source>&lt;%1&gt; can&apos;t stand in &lt;%2&gt;.</source>
        <translation>&lt;%1&gt; kann nicht in &lt;%2&gt; stehen.</translation>
    </message>
    <message>
        <source>Server code has no elements in it.</source>
        <translation>Servercode enthält keine Elemente.</translation>
    </message>
    <message>
        <source>&lt;%1&gt; has no elements in it.</source>
        <translation>&lt;%1&gt; enthält keine Elemente.</translation>
    </message>
    <message>
        <source>&lt;%1&gt; stands only in %2.</source>
        <translation>&lt;%1&gt; steht nur in %2.</translation>
    </message>
    <message>
        <source>&lt;%1&gt; takes only %2.</source>
        <translation>&lt;%1&gt; nimmt nur %2 auf.</translation>
    </message>
    <message>
        <source>&lt;%1&gt; takes only what belongs into a line of text.</source>
        <translation>&lt;%1&gt; nimmt nur auf, was in eine Textzeile gehört.</translation>
    </message>
    <message>
        <source>A page may have only one &lt;%1&gt; like this.</source>
        <translation>Eine Seite darf nur ein solches &lt;%1&gt; haben.</translation>
    </message>
    <message>
        <source>A browser would put &lt;%1&gt; elsewhere.</source>
        <translation>Ein Browser würde &lt;%1&gt; woanders einsetzen.</translation>
    </message>
    <message>
        <source>&lt;%1&gt; stands first in &lt;%2&gt;.</source>
        <translation>&lt;%1&gt; steht als erstes Element in &lt;%2&gt;.</translation>
    </message>
    <message>
        <source>Nothing can be put here.</source>
        <translation>Hierhin kann nichts verschoben werden.</translation>
    </message>
    <message>
        <source>Text can&apos;t stand in &lt;%1&gt;.</source>
        <translation>Text kann nicht in &lt;%1&gt; stehen.</translation>
    </message>
    <message>
        <source>Server code can&apos;t be moved to &lt;%1&gt;.</source>
        <translation>Servercode kann nicht in &lt;%1&gt; verschoben werden.</translation>
    </message>
    <message>
        <source>A comment can&apos;t stand in &lt;%1&gt;.</source>
        <translation>Ein Kommentar kann nicht in &lt;%1&gt; stehen.</translation>
    </message>
    <message>
        <source>&lt;%1&gt; can&apos;t be moved. Its place in a page is fixed.</source>
        <translation>&lt;%1&gt; kann nicht verschoben werden. Sein Platz in der Seite steht fest.</translation>
    </message>
</context>
<context>
    <name>luma::ElementPath</name>
    <message>
        <source>Path of the element: %1</source>
        <translation>Pfad des Elements: %1</translation>
    </message>
    <message>
        <source>Click selects, right click shows the siblings</source>
        <translation>Ein Klick wählt aus, ein Rechtsklick zeigt die Geschwister</translation>
    </message>
</context>
<context>
    <name>luma::ElementResizing</name>
    <message>
        <source>Resize</source>
        <translation>Größe ändern</translation>
    </message>
</context>
<context>
    <name>luma::ElementSheet</name>
    <message>
        <source>HTML has no such element.</source>
        <translation>HTML kennt kein solches Element.</translation>
    </message>
    <message>
        <source>the selected row</source>
        <translation>der gewählten Zeile</translation>
    </message>
    <message>
        <source>At the beginning of %1</source>
        <translation>Am Anfang von %1</translation>
    </message>
    <message>
        <source>At the end of %1</source>
        <translation>Am Ende von %1</translation>
    </message>
    <message>
        <source>Before %1</source>
        <translation>Vor %1</translation>
    </message>
    <message>
        <source>After %1</source>
        <translation>Nach %1</translation>
    </message>
    <message>
        <source>At the caret in %1</source>
        <translation>An der Einfügemarke in %1</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
</context>
<context>
    <name>luma::EndpointForm</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Auswählen …</translation>
    </message>
    <message>
        <source>Source: %1</source>
        <translation>Quelle: %1</translation>
    </message>
    <message>
        <source>Destination: %1</source>
        <translation>Ziel: %1</translation>
    </message>
    <message>
        <source>Choose folder</source>
        <translation>Ordner auswählen</translation>
    </message>
    <message>
        <source>Show password</source>
        <translation>Passwort anzeigen</translation>
    </message>
</context>
<context>
    <name>luma::Engines</name>
    <message>
        <source>%1: stopped</source>
        <translation>%1: angehalten</translation>
    </message>
    <message>
        <source>A value cannot be stored in a property list</source>
        <translation>Ein Wert lässt sich nicht in einer Eigenschaftsliste speichern</translation>
    </message>
    <message>
        <source>Out of memory</source>
        <translation>Zu wenig Speicher</translation>
    </message>
    <message>
        <source>Not a readable property list</source>
        <translation>Keine lesbare Eigenschaftsliste</translation>
    </message>
    <message>
        <source>%1: This volume has no trash</source>
        <translation>%1: Dieser Datenträger hat keinen Papierkorb</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be the name of a file</source>
        <translation>„%1“ kann nicht der Name einer Datei sein</translation>
    </message>
    <message>
        <source>Updating links to: %1</source>
        <translation>Links werden aktualisiert zu: %1</translation>
    </message>
    <message>
        <source>there is no secret service</source>
        <translation>es gibt keinen Passwortdienst</translation>
    </message>
    <message>
        <source>the secret service has no default keyring</source>
        <translation>der Passwortdienst hat keinen Standardschlüsselbund</translation>
    </message>
    <message>
        <source>the keyring is locked</source>
        <translation>der Schlüsselbund ist gesperrt</translation>
    </message>
    <message>
        <source>the secret service refused the password</source>
        <translation>der Passwortdienst hat das Passwort abgelehnt</translation>
    </message>
    <message>
        <source>the secret service does not give the password back</source>
        <translation>der Passwortdienst gibt das Passwort nicht wieder heraus</translation>
    </message>
    <message>
        <source>LUMA is already running but does not answer</source>
        <translation>LUMA läuft schon, antwortet aber nicht</translation>
    </message>
    <message>
        <source>It holds a character that %1 lacks, in a script, a style sheet or a comment, where it can&apos;t be written otherwise.</source>
        <translation>Sie enthält ein Zeichen, das %1 nicht kennt, in einem Skript, einem Stylesheet oder einem Kommentar, wo es sich nicht anders schreiben lässt.</translation>
    </message>
    <message>
        <source>It is larger than %1 MB.</source>
        <translation>Sie ist größer als %1 MB.</translation>
    </message>
    <message>
        <source>It is not UTF-8.</source>
        <translation>Sie ist nicht UTF-8.</translation>
    </message>
    <message>
        <source>Its unclosed tags multiply its elements without limit.</source>
        <translation>Ihre nicht geschlossenen Tags vervielfachen ihre Elemente ohne Ende.</translation>
    </message>
    <message>
        <source>One of its tags has too many attributes.</source>
        <translation>Eines ihrer Tags hat zu viele Attribute.</translation>
    </message>
    <message>
        <source>Its elements are nested too deeply.</source>
        <translation>Ihre Elemente sind zu tief geschachtelt.</translation>
    </message>
    <message>
        <source>%1: Not a page</source>
        <translation>%1: Keine Seite</translation>
    </message>
    <message>
        <source>%1: Not in the site</source>
        <translation>%1: Nicht in der Website</translation>
    </message>
    <message>
        <source>a name elsewhere</source>
        <translation>einem Namen anderswo</translation>
    </message>
    <message>
        <source>%1 and %2</source>
        <translation>%1 und %2</translation>
    </message>
    <message>
        <source>No longer the same file as %1, because their links will differ</source>
        <translation>Nicht länger dieselbe Datei wie %1, weil sich ihre Links unterscheiden werden</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a valid file name</source>
        <translation>„%1“ ist kein gültiger Dateiname</translation>
    </message>
    <message>
        <source>the site&apos;s folder itself can&apos;t be moved or renamed</source>
        <translation>der Ordner der Website selbst lässt sich nicht verschieben oder umbenennen</translation>
    </message>
    <message>
        <source>File %1 exists, not overwritten</source>
        <translation>Datei %1 ist schon da und wurde nicht überschrieben</translation>
    </message>
    <message>
        <source>%1: a folder can&apos;t go into itself</source>
        <translation>%1: ein Ordner kann nicht in sich selbst</translation>
    </message>
    <message>
        <source>%1: is outside the site</source>
        <translation>%1: liegt außerhalb der Website</translation>
    </message>
    <message>
        <source>%1 link</source>
        <translation>%1 Link</translation>
    </message>
    <message>
        <source>%1 links</source>
        <translation>%1 Links</translation>
    </message>
    <message>
        <source>%1 page</source>
        <translation>%1 Seite</translation>
    </message>
    <message>
        <source>%1 pages</source>
        <translation>%1 Seiten</translation>
    </message>
    <message>
        <source>%1 other item</source>
        <translation>%1 weiteren Objekt</translation>
    </message>
    <message>
        <source>%1 other items</source>
        <translation>%1 weiteren Objekten</translation>
    </message>
    <message>
        <source>leaves its site; %1 on %2 will be missing there</source>
        <translation>verlässt seine Website; dort fehlen dann: %1 auf %2</translation>
    </message>
    <message>
        <source>leaves its site with %1; %2 on %3 will be missing there</source>
        <translation>verlässt seine Website mit %1; dort fehlen dann: %2 auf %3</translation>
    </message>
    <message>
        <source>%1: not moved</source>
        <translation>%1: nicht verschoben</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Updating links from: %1 to %2</source>
        <translation>Links werden aktualisiert von: %1 zu %2</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Verschieben</translation>
    </message>
    <message>
        <source>%1 items</source>
        <translation>%1 Objekte</translation>
    </message>
    <message>
        <source>Remove the copy of %1</source>
        <translation>Kopie von %1 entfernen</translation>
    </message>
    <message>
        <source>Change links to %1 to %2</source>
        <translation>Links zu %1 in Links zu %2 ändern</translation>
    </message>
    <message>
        <source>Change links to %1</source>
        <translation>Links zu %1 ändern</translation>
    </message>
    <message>
        <source>Copy %1 to %2</source>
        <translation>%1 nach %2 kopieren</translation>
    </message>
    <message>
        <source>Rename %1 to %2</source>
        <translation>%1 in %2 umbenennen</translation>
    </message>
    <message>
        <source>Move %1 to %2</source>
        <translation>%1 nach %2 verschieben</translation>
    </message>
    <message>
        <source>%1: files are being moved here by another program</source>
        <translation>%1: hier verschiebt gerade ein anderes Programm Dateien</translation>
    </message>
    <message>
        <source>%1, and its journal can&apos;t be used any more</source>
        <translation>%1, und das Protokoll dazu ist nicht mehr zu gebrauchen</translation>
    </message>
    <message>
        <source>%1: is gone</source>
        <translation>%1: ist nicht mehr da</translation>
    </message>
    <message>
        <source>%1: is gone, left as it is</source>
        <translation>%1: ist nicht mehr da; so gelassen</translation>
    </message>
    <message>
        <source>%1: has changed since</source>
        <translation>%1: wurde seither geändert</translation>
    </message>
    <message>
        <source>%1: has changed since, left as it is</source>
        <translation>%1: wurde seither geändert; so gelassen</translation>
    </message>
    <message>
        <source>its links can&apos;t be changed without changing more, so they stay as they are</source>
        <translation>ihre Links lassen sich nicht ändern, ohne mehr zu ändern; sie bleiben, wie sie sind</translation>
    </message>
    <message>
        <source>%1: keeps being changed by another program</source>
        <translation>%1: wird immer wieder von einem anderen Programm geändert</translation>
    </message>
    <message>
        <source>%1: the journal of an interrupted move can&apos;t be read</source>
        <translation>%1: das Protokoll eines unterbrochenen Verschiebens ist nicht lesbar</translation>
    </message>
    <message>
        <source>There is no move to take back</source>
        <translation>Es gibt kein Verschieben, das sich rückgängig machen ließe</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>angehalten</translation>
    </message>
    <message>
        <source>the server did not answer within %1 seconds</source>
        <translation>der Server hat innerhalb von %1 Sekunden nicht geantwortet</translation>
    </message>
    <message>
        <source>%1: no such folder on the server</source>
        <translation>%1: diesen Ordner gibt es auf dem Server nicht</translation>
    </message>
    <message>
        <source>%1: the folder can&apos;t be read</source>
        <translation>%1: der Ordner ist nicht lesbar</translation>
    </message>
    <message>
        <source>%1: mounted, but its local folder can&apos;t be read (is gvfs-fuse installed?)</source>
        <translation>%1: eingebunden, aber der lokale Ordner ist nicht lesbar (ist gvfs-fuse installiert?)</translation>
    </message>
    <message>
        <source>%1: not the address of a share</source>
        <translation>%1: nicht die Adresse einer Freigabe</translation>
    </message>
    <message>
        <source>%1 is too large for a page</source>
        <translation>%1 ist zu groß für eine Seite</translation>
    </message>
    <message>
        <source>%1 is no page: it holds binary data</source>
        <translation>%1 ist keine Seite: die Datei enthält Binärdaten</translation>
    </message>
    <message>
        <source>%1 is not HTML but XML, with the root element &lt;%2&gt;.</source>
        <translation>%1 ist nicht HTML, sondern XML mit dem Wurzelelement &lt;%2&gt;.</translation>
    </message>
    <message>
        <source>there is no page to save</source>
        <translation>es gibt keine Seite zu sichern</translation>
    </message>
    <message>
        <source>The style sheet&apos;s text can&apos;t be written in its encoding.</source>
        <translation>Der Text des Stylesheets lässt sich in seiner Kodierung nicht schreiben.</translation>
    </message>
    <message>
        <source>The style sheet holds bytes that are no characters of its encoding.</source>
        <translation>Das Stylesheet enthält Bytes, die in seiner Kodierung keine Zeichen sind.</translation>
    </message>
    <message>
        <source>Connect both sides first</source>
        <translation>Verbinden Sie zuerst beide Seiten</translation>
    </message>
    <message>
        <source>a symbolic link stands where the folder should be</source>
        <translation>wo der Ordner sein sollte, steht ein symbolischer Link</translation>
    </message>
    <message>
        <source>a file stands where the folder should be</source>
        <translation>wo der Ordner sein sollte, steht eine Datei</translation>
    </message>
    <message>
        <source>the receiving side has been changed since the comparison</source>
        <translation>die empfangende Seite wurde seit dem Vergleich geändert</translation>
    </message>
    <message>
        <source>no longer a file</source>
        <translation>keine Datei mehr</translation>
    </message>
    <message>
        <source>a folder stands where the file should be</source>
        <translation>wo die Datei sein sollte, steht ein Ordner</translation>
    </message>
    <message>
        <source>something has appeared in its place since the comparison</source>
        <translation>an ihrer Stelle ist seit dem Vergleich etwas erschienen</translation>
    </message>
    <message>
        <source>it has appeared on the sending side since the comparison</source>
        <translation>sie ist seit dem Vergleich auf der sendenden Seite erschienen</translation>
    </message>
    <message>
        <source>the old version can&apos;t be kept: %1</source>
        <translation>die alte Fassung lässt sich nicht aufheben: %1</translation>
    </message>
    <message>
        <source>Old kept versions can&apos;t be removed: %1</source>
        <translation>Alte aufgehobene Fassungen lassen sich nicht entfernen: %1</translation>
    </message>
    <message>
        <source>Nothing can be kept beside &quot;%1&quot;; choose a folder for what is replaced</source>
        <translation>Neben „%1“ lässt sich nichts aufheben; wählen Sie einen Ordner für das, was ersetzt wird</translation>
    </message>
    <message>
        <source>The folder for what is replaced must be given as an absolute path</source>
        <translation>Der Ordner für das, was ersetzt wird, muss als absoluter Pfad angegeben sein</translation>
    </message>
    <message>
        <source>What is replaced must not be kept inside the site&apos;s own folder</source>
        <translation>Was ersetzt wird, darf nicht im Ordner der Website selbst aufgehoben werden</translation>
    </message>
    <message>
        <source>This site is being published by another window or program</source>
        <translation>Diese Website wird gerade von einem anderen Fenster oder Programm veröffentlicht</translation>
    </message>
    <message>
        <source>A file could not be written; the disk on the receiving side may be full</source>
        <translation>Eine Datei ließ sich nicht schreiben; vielleicht ist der Datenträger der empfangenden Seite voll</translation>
    </message>
    <message>
        <source>rsync ended with code %1</source>
        <translation>rsync endete mit Code %1</translation>
    </message>
    <message>
        <source>The site lacks a path, a server or a user name</source>
        <translation>Der Website fehlt ein Pfad, ein Server oder ein Benutzername</translation>
    </message>
    <message>
        <source>What is replaced can&apos;t be kept in &quot;%1&quot;; choose another folder for it</source>
        <translation>Was ersetzt wird, lässt sich nicht in „%1“ aufheben; wählen Sie dafür einen anderen Ordner</translation>
    </message>
    <message>
        <source>the archive contains no site list</source>
        <translation>das Archiv enthält keine Liste von Websites</translation>
    </message>
    <message>
        <source>the site list is not an array</source>
        <translation>die Liste der Websites ist kein Feld</translation>
    </message>
    <message>
        <source>the site list contains an entry that is not a record</source>
        <translation>die Liste der Websites enthält einen Eintrag, der kein Datensatz ist</translation>
    </message>
    <message>
        <source>Connect the destination first</source>
        <translation>Verbinden Sie zuerst das Ziel</translation>
    </message>
    <message>
        <source>diff can&apos;t be run</source>
        <translation>diff lässt sich nicht starten</translation>
    </message>
    <message>
        <source>diff printed what can&apos;t be read</source>
        <translation>die Ausgabe von diff ist nicht lesbar</translation>
    </message>
    <message>
        <source>No longer the same file as %1, because their text will differ</source>
        <translation>Nicht mehr dieselbe Datei wie %1, weil ihr Text sich unterscheiden wird</translation>
    </message>
    <message>
        <source>Replace &quot;%1&quot; by &quot;%2&quot;</source>
        <translation>„%1“ durch „%2“ ersetzen</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>its text can&apos;t be replaced without changing more, so it stays as it is</source>
        <translation>ihr Text lässt sich nicht ersetzen, ohne mehr zu ändern, und bleibt deshalb, wie er ist</translation>
    </message>
    <message>
        <source>it would hold a character that %1 lacks, so it stays as it is</source>
        <translation>sie enthielte ein Zeichen, das in %1 fehlt, und bleibt deshalb, wie sie ist</translation>
    </message>
    <message>
        <source>A script here mentions &quot;%1&quot;; scripts are not changed</source>
        <translation>Ein Skript hier erwähnt „%1“; Skripte werden nicht geändert</translation>
    </message>
    <message>
        <source>Another element has the id &quot;%1&quot; already</source>
        <translation>Ein anderes Element hat bereits die ID „%1“</translation>
    </message>
    <message>
        <source>A name has at least one character, no blanks and none of &quot; &apos; &lt; &gt; = &amp; ` \</source>
        <translation>Ein Name hat mindestens ein Zeichen, keine Leerzeichen und keines von &quot; &apos; &lt; &gt; = &amp; ` \</translation>
    </message>
    <message>
        <source>Rename the id %1 to %2</source>
        <translation>Die ID %1 in %2 umbenennen</translation>
    </message>
    <message>
        <source>Rename the class %1 to %2</source>
        <translation>Die Klasse %1 in %2 umbenennen</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>The class &quot;%1&quot; exists already; both will be one</source>
        <translation>Die Klasse „%1“ gibt es schon; aus beiden wird eine</translation>
    </message>
    <message>
        <source>Take Back</source>
        <translation>Zurücknehmen</translation>
    </message>
    <message>
        <source>Rename Anyway</source>
        <translation>Trotzdem umbenennen</translation>
    </message>
    <message>
        <source>%1 was replaced in the file; this window keeps its own text, in which the ticked places can&apos;t be told from the others</source>
        <translation>%1 wurde in der Datei ersetzt; dieses Fenster behält seinen eigenen Text, in dem sich die angehakten Stellen nicht von den anderen unterscheiden lassen</translation>
    </message>
    <message>
        <source>Replace Anyway</source>
        <translation>Trotzdem ersetzen</translation>
    </message>
    <message>
        <source>The template uses too many files: %1</source>
        <translation>Die Vorlage verwendet zu viele Dateien: %1</translation>
    </message>
    <message>
        <source>%1: leads out of the folder of templates</source>
        <translation>%1: führt aus dem Ordner der Vorlagen heraus</translation>
    </message>
    <message>
        <source>The files that the template uses are too large: %1 MB</source>
        <translation>Die Dateien, die die Vorlage verwendet, sind zu groß: %1 MB</translation>
    </message>
</context>
<context>
    <name>luma::FileJobs</name>
    <message>
        <source>New Folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message>
        <source>Duplicate</source>
        <translation>Duplizieren</translation>
    </message>
    <message>
        <source>Are you sure you want to delete this item(s)?</source>
        <translation>Möchten Sie die ausgewählten Objekte wirklich löschen?</translation>
    </message>
    <message>
        <source>To the trash: %1</source>
        <translation>In den Papierkorb: %1</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Looking for links to it...</source>
        <translation>Links darauf werden gesucht …</translation>
    </message>
    <message>
        <source>Links to it can&apos;t be counted: %1</source>
        <translation>Links darauf lassen sich nicht zählen: %1</translation>
    </message>
    <message>
        <source>No page that stays links to it.</source>
        <translation>Keine Seite, die bleibt, hat Links darauf.</translation>
    </message>
    <message>
        <source>%1 on %2 will be missing then.</source>
        <translation>Dann fehlen: %1 auf %2.</translation>
    </message>
    <message>
        <source>link</source>
        <translation>Link</translation>
    </message>
    <message>
        <source>links</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>pages</source>
        <translation>Seiten</translation>
    </message>
</context>
<context>
    <name>luma::FileSystemBrowserCell</name>
    <message>
        <source>New name</source>
        <translation>Neuer Name</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>luma::FormatBar</name>
    <message>
        <source>Block format</source>
        <translation>Absatzformat</translation>
    </message>
    <message>
        <source>Make the selected blocks paragraphs, headings or preformatted text</source>
        <translation>Ausgewählte Absätze zu Absätzen, Überschriften oder vorformatiertem Text machen</translation>
    </message>
</context>
<context>
    <name>luma::FormatMenus</name>
    <message>
        <source>Text Style</source>
        <translation>Textstil</translation>
    </message>
    <message>
        <source>Bold</source>
        <translation>Fett</translation>
    </message>
    <message>
        <source>Italic</source>
        <translation>Kursiv</translation>
    </message>
    <message>
        <source>Underline</source>
        <translation>Unterstrichen</translation>
    </message>
    <message>
        <source>Strike Through</source>
        <translation>Durchgestrichen</translation>
    </message>
    <message>
        <source>Superscript</source>
        <translation>Hochgestellt</translation>
    </message>
    <message>
        <source>Subscript</source>
        <translation>Tiefgestellt</translation>
    </message>
    <message>
        <source>Code</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>Paragraph</source>
        <translation>Absatz</translation>
    </message>
    <message>
        <source>Heading 1</source>
        <translation>Überschrift 1</translation>
    </message>
    <message>
        <source>Heading 2</source>
        <translation>Überschrift 2</translation>
    </message>
    <message>
        <source>Heading 3</source>
        <translation>Überschrift 3</translation>
    </message>
    <message>
        <source>Heading 4</source>
        <translation>Überschrift 4</translation>
    </message>
    <message>
        <source>Heading 5</source>
        <translation>Überschrift 5</translation>
    </message>
    <message>
        <source>Heading 6</source>
        <translation>Überschrift 6</translation>
    </message>
    <message>
        <source>Block Quote</source>
        <translation>Zitatblock</translation>
    </message>
    <message>
        <source>Preformatted</source>
        <translation>Vorformatiert</translation>
    </message>
    <message>
        <source>Ordered List</source>
        <translation>Nummerierte Liste</translation>
    </message>
    <message>
        <source>Unordered List</source>
        <translation>Aufzählung</translation>
    </message>
    <message>
        <source>Indent</source>
        <translation>Einrücken</translation>
    </message>
    <message>
        <source>Outdent</source>
        <translation>Ausrücken</translation>
    </message>
    <message>
        <source>Remove Format</source>
        <translation>Format entfernen</translation>
    </message>
    <message>
        <source>Text Justification</source>
        <translation>Textausrichtung</translation>
    </message>
    <message>
        <source>Justify Left</source>
        <translation>Linksbündig</translation>
    </message>
    <message>
        <source>Justify Center</source>
        <translation>Zentriert</translation>
    </message>
    <message>
        <source>Justify Right</source>
        <translation>Rechtsbündig</translation>
    </message>
    <message>
        <source>Justify Full</source>
        <translation>Blocksatz</translation>
    </message>
    <message>
        <source>Remove Justification</source>
        <translation>Ausrichtung entfernen</translation>
    </message>
</context>
<context>
    <name>luma::FoundPlaces</name>
    <message>
        <source>%1:%2</source>
        <translation>%1:%2</translation>
    </message>
    <message>
        <source>place</source>
        <translation>Stelle</translation>
    </message>
    <message>
        <source>places</source>
        <translation>Stellen</translation>
    </message>
    <message>
        <source>Line %1, column %2</source>
        <translation>Zeile %1, Spalte %2</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>Stelle</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>New text</source>
        <translation>Neuer Text</translation>
    </message>
</context>
<context>
    <name>luma::HTMLDocument</name>
    <message>
        <source>The style sheet could not be saved: %1</source>
        <translation>Das Stylesheet konnte nicht gesichert werden: %1</translation>
    </message>
    <message>
        <source>The page&apos;s links were not updated. %1</source>
        <translation>Die Links der Seite wurden nicht angepasst. %1</translation>
    </message>
    <message>
        <source>This page can&apos;t be edited. %1</source>
        <translation>Diese Seite kann nicht bearbeitet werden. %1</translation>
    </message>
    <message>
        <source>Revert</source>
        <translation>Zurückkehren</translation>
    </message>
    <message>
        <source>The page could not be tidied. %1</source>
        <translation>Die Seite konnte nicht geordnet werden. %1</translation>
    </message>
    <message>
        <source>Another program has changed this page. Reload takes its version; undo brings yours back.</source>
        <translation>Ein anderes Programm hat diese Seite geändert. „Neu laden“ übernimmt dessen Fassung; „Rückgängig“ holt Ihre zurück.</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Neu laden</translation>
    </message>
    <message>
        <source>The page was not changed: %1</source>
        <translation>Die Seite wurde nicht geändert: %1</translation>
    </message>
    <message>
        <source>Title:</source>
        <translation>Titel:</translation>
    </message>
    <message>
        <source>The page could not be saved; your edits are kept. %1</source>
        <translation>Die Seite konnte nicht gesichert werden; Ihre Änderungen bleiben erhalten. %1</translation>
    </message>
    <message>
        <source>The unsaved edits can&apos;t be brought back. %1</source>
        <translation>Die nicht gesicherten Änderungen können nicht zurückgeholt werden. %1</translation>
    </message>
    <message>
        <source>These edits were not saved when LUMA ended. Undo shows the page without them.</source>
        <translation>Diese Änderungen waren nicht gesichert, als LUMA endete. „Rückgängig“ zeigt die Seite ohne sie.</translation>
    </message>
    <message>
        <source>The picture was not copied: %1</source>
        <translation>Das Bild wurde nicht kopiert: %1</translation>
    </message>
    <message>
        <source>The page could not be opened there: %1</source>
        <translation>Die Seite konnte dort nicht geöffnet werden: %1</translation>
    </message>
    <message>
        <source>The template could not be saved. %1</source>
        <translation>Die Vorlage konnte nicht gesichert werden. %1</translation>
    </message>
    <message>
        <source>The files that the template uses are being copied into the site.</source>
        <translation>Die Dateien, die die Vorlage verwendet, werden in die Website kopiert.</translation>
    </message>
    <message>
        <source>The files that the template uses were not copied into the site. %1</source>
        <translation>Die Dateien, die die Vorlage verwendet, wurden nicht in die Website kopiert. %1</translation>
    </message>
    <message>
        <source>The page&apos;s server does not answer. LUMA goes on as soon as it does.</source>
        <translation>Der Server der Seite antwortet nicht. LUMA macht weiter, sobald er antwortet.</translation>
    </message>
</context>
<context>
    <name>luma::HaldenDoc</name>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>Destination</source>
        <translation>Ziel</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Hochladen</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>LUMA is using rsync for faster uploads and downloads.</source>
        <translation>LUMA verwendet rsync für schnelleres Hoch- und Herunterladen.</translation>
    </message>
    <message>
        <source>Turn on rsync to make uploads and downloads go faster.</source>
        <translation>Schalten Sie rsync ein, um schneller hoch- und herunterzuladen.</translation>
    </message>
    <message>
        <source>Remote Login setup requested.</source>
        <translation>Remote Login wird eingerichtet.</translation>
    </message>
    <message>
        <source>Remote Login setup done. Verifying connection...</source>
        <translation>Remote Login ist eingerichtet. Die Verbindung wird geprüft …</translation>
    </message>
    <message>
        <source>Uplo&amp;ad This...</source>
        <translation>Dies ho&amp;chladen …</translation>
    </message>
    <message>
        <source>Downlo&amp;ad This...</source>
        <translation>Dies herun&amp;terladen …</translation>
    </message>
</context>
<context>
    <name>luma::HeadingsPanel</name>
    <message>
        <source>(no text)</source>
        <translation>(ohne Text)</translation>
    </message>
    <message>
        <source>%1  (after h%2)</source>
        <translation>%1  (nach h%2)</translation>
    </message>
    <message>
        <source>Levels are left out</source>
        <translation>Ebenen sind ausgelassen</translation>
    </message>
    <message>
        <source>Headings: %1</source>
        <translation>Überschriften: %1</translation>
    </message>
</context>
<context>
    <name>luma::HelpMenu</name>
    <message>
        <source>About LUMA</source>
        <translation>Über LUMA</translation>
    </message>
    <message>
        <source>LUMA %1</source>
        <translation>LUMA %1</translation>
    </message>
    <message>
        <source>Manages web sites kept as folders of pages: publishes changes and keeps links correct.</source>
        <translation>Verwaltet Websites als Ordner von Seiten: veröffentlicht Änderungen und hält Links richtig.</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>LUMA &amp;Manual</source>
        <translation>LUMA-&amp;Handbuch</translation>
    </message>
    <message>
        <source>&amp;Keys</source>
        <translation>&amp;Tasten</translation>
    </message>
    <message>
        <source>&amp;About LUMA</source>
        <translation>&amp;Über LUMA</translation>
    </message>
    <message>
        <source>About &amp;Qt</source>
        <translation>Über &amp;Qt</translation>
    </message>
</context>
<context>
    <name>luma::HiddenElements</name>
    <message>
        <source>Only elements in &lt;body&gt; can be hidden.</source>
        <translation>Nur Elemente in &lt;body&gt; können ausgeblendet werden.</translation>
    </message>
</context>
<context>
    <name>luma::IconPreviewController</name>
    <message>
        <source>Symbolic link
%1</source>
        <translation>Symbolischer Link
%1</translation>
    </message>
</context>
<context>
    <name>luma::ItemCommands</name>
    <message>
        <source>No program for this kind of file</source>
        <translation>Kein Programm für diese Art von Datei</translation>
    </message>
</context>
<context>
    <name>luma::ItemProperties</name>
    <message>
        <source>Properties</source>
        <translation>Eigenschaften</translation>
    </message>
    <message>
        <source>Items</source>
        <translation>Objekte</translation>
    </message>
    <message>
        <source>Contents</source>
        <translation>Inhalt</translation>
    </message>
    <message>
        <source>Counting...</source>
        <translation>Wird gezählt …</translation>
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
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>No longer there</source>
        <translation>Nicht mehr vorhanden</translation>
    </message>
    <message>
        <source>Symbolic link</source>
        <translation>Symbolischer Link</translation>
    </message>
    <message>
        <source>Leads to</source>
        <translation>Führt zu</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>%1 (%2 bytes)</source>
        <translation>%1 (%2 Bytes)</translation>
    </message>
    <message>
        <source>Changed</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Permissions</source>
        <translation>Rechte</translation>
    </message>
    <message>
        <source>file</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>folders</source>
        <translation>Ordner</translation>
    </message>
</context>
<context>
    <name>luma::LUMAAppDelegate</name>
    <message>
        <source>Waiting for the password. The desktop may ask you to unlock its keyring.</source>
        <translation>Warten auf das Passwort. Der Desktop bittet Sie vielleicht, den Schlüsselbund zu entsperren.</translation>
    </message>
    <message>
        <source>The sample site can&apos;t be copied.</source>
        <translation>Die Beispielwebsite kann nicht kopiert werden.</translation>
    </message>
    <message>
        <source>%1 copy</source>
        <translation>%1 Kopie</translation>
    </message>
    <message>
        <source>%1: not a list of sites</source>
        <translation>%1: keine Liste von Websites</translation>
    </message>
    <message>
        <source>%1: there are no sites in this list</source>
        <translation>%1: in dieser Liste sind keine Websites</translation>
    </message>
    <message>
        <source>Import sites</source>
        <translation>Websites importieren</translation>
    </message>
    <message>
        <source>Export sites, without passwords</source>
        <translation>Websites exportieren, ohne Passwörter</translation>
    </message>
    <message>
        <source>Lists of sites (*.lumasites)</source>
        <translation>Listen von Websites (*.lumasites)</translation>
    </message>
    <message>
        <source>Remove “%1” from the list? Its files stay.</source>
        <translation>„%1“ aus der Liste entfernen? Die Dateien bleiben.</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>Last record in the list cannot be deleted.</source>
        <translation>Der letzte Eintrag der Liste kann nicht gelöscht werden.</translation>
    </message>
    <message>
        <source>Select the path to the site folder</source>
        <translation>Pfad zum Ordner der Website auswählen</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>&amp;Undo removal of “%1”</source>
        <translation>&amp;Rückgängig: „%1“ entfernen</translation>
    </message>
    <message>
        <source>Add the sites of “%1” to the list?</source>
        <translation>Die Websites aus „%1“ zur Liste hinzufügen?</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importieren</translation>
    </message>
</context>
<context>
    <name>luma::LinkActions</name>
    <message>
        <source>Insert Image</source>
        <translation>Bild einfügen</translation>
    </message>
    <message>
        <source>Edit Link</source>
        <translation>Link bearbeiten</translation>
    </message>
    <message>
        <source>Drop</source>
        <translation>Ablegen</translation>
    </message>
    <message>
        <source>%1 is outside the site</source>
        <translation>%1 liegt außerhalb der Website</translation>
    </message>
    <message>
        <source>Not in the site: %1</source>
        <translation>Nicht in der Website: %1</translation>
    </message>
    <message>
        <source>A copy in the site is published with the page.</source>
        <translation>Eine Kopie in der Website wird mit der Seite veröffentlicht.</translation>
    </message>
    <message>
        <source>Insert Without Copy</source>
        <translation>Ohne Kopie einfügen</translation>
    </message>
    <message>
        <source>Copy Into Site</source>
        <translation>In die Website kopieren</translation>
    </message>
    <message>
        <source>Make Link</source>
        <translation>Link erstellen</translation>
    </message>
</context>
<context>
    <name>luma::LinkFindings</name>
    <message>
        <source>no such file</source>
        <translation>keine solche Datei</translation>
    </message>
    <message>
        <source>other letter case</source>
        <translation>andere Groß-/Kleinschreibung</translation>
    </message>
    <message>
        <source>folder without index page</source>
        <translation>Ordner ohne Indexseite</translation>
    </message>
    <message>
        <source>no such place in the page</source>
        <translation>keine solche Stelle in der Seite</translation>
    </message>
    <message>
        <source>outside the site</source>
        <translation>außerhalb der Website</translation>
    </message>
</context>
<context>
    <name>luma::LinkJobs</name>
    <message>
        <source>Listing all links from: </source>
        <translation>Alle Links werden aufgelistet, die hiervon ausgehen: </translation>
    </message>
    <message>
        <source>Listing all links to: </source>
        <translation>Alle Links werden aufgelistet, die hierhin führen: </translation>
    </message>
    <message>
        <source>Checking source files for missing links (*** MISSING ***)</source>
        <translation>Quelldateien werden auf fehlende Links geprüft (*** MISSING ***)</translation>
    </message>
</context>
<context>
    <name>luma::LinkPlanModel</name>
    <message>
        <source>Stays as it is: %1</source>
        <translation>Bleibt, wie es ist: %1</translation>
    </message>
    <message>
        <source>Page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Zeile</translation>
    </message>
    <message>
        <source>Link</source>
        <translation>Link</translation>
    </message>
    <message>
        <source>New link</source>
        <translation>Neuer Link</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>New text</source>
        <translation>Neuer Text</translation>
    </message>
</context>
<context>
    <name>luma::LinkReportModel</name>
    <message>
        <source>%1  (%2)</source>
        <translation>%1  (%2)</translation>
    </message>
    <message>
        <source>Link</source>
        <translation>Link</translation>
    </message>
    <message>
        <source>Page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Zeile</translation>
    </message>
    <message>
        <source>Column</source>
        <translation>Spalte</translation>
    </message>
    <message>
        <source>Attribute</source>
        <translation>Attribut</translation>
    </message>
    <message>
        <source>Problem</source>
        <translation>Problem</translation>
    </message>
    <message>
        <source>Did you mean</source>
        <translation>Gemeint war vielleicht</translation>
    </message>
</context>
<context>
    <name>luma::LinkReportPanel</name>
    <message>
        <source>&amp;Open Page</source>
        <translation>Seite ö&amp;ffnen</translation>
    </message>
    <message>
        <source>Show in &amp;Pane</source>
        <translation>Im &amp;Bereich zeigen</translation>
    </message>
    <message>
        <source>&amp;Replace Everywhere...</source>
        <translation>Überall &amp;ersetzen …</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copy as CS&amp;V</source>
        <translation>Als CS&amp;V kopieren</translation>
    </message>
    <message>
        <source>&amp;Save As...</source>
        <translation>S&amp;ichern unter …</translation>
    </message>
    <message>
        <source>Missing links</source>
        <translation>Fehlende Links</translation>
    </message>
    <message>
        <source>Links from %1</source>
        <translation>Links von %1</translation>
    </message>
    <message>
        <source>Links to %1</source>
        <translation>Links zu %1</translation>
    </message>
    <message>
        <source>in %1: %2</source>
        <translation>in %1: %2</translation>
    </message>
    <message>
        <source>New target of all links to %1</source>
        <translation>Neues Ziel aller Links zu %1</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>Save the report</source>
        <translation>Bericht sichern</translation>
    </message>
    <message>
        <source>Comma-separated values (*.csv);;JSON (*.json)</source>
        <translation>Durch Kommas getrennte Werte (*.csv);;JSON (*.json)</translation>
    </message>
    <message>
        <source>The report could not be saved</source>
        <translation>Der Bericht konnte nicht gesichert werden</translation>
    </message>
    <message>
        <source>No row matches the filter.</source>
        <translation>Keine Zeile passt zum Filter.</translation>
    </message>
    <message>
        <source>Looking through all pages of the site</source>
        <translation>Alle Seiten der Website werden durchgesehen</translation>
    </message>
    <message>
        <source>Stopped before all pages were checked. Restart begins again.</source>
        <translation>Angehalten, bevor alle Seiten geprüft waren. „Neu starten“ beginnt von vorn.</translation>
    </message>
    <message>
        <source>No missing links.</source>
        <translation>Keine fehlenden Links.</translation>
    </message>
    <message>
        <source>This page has no links.</source>
        <translation>Diese Seite hat keine Links.</translation>
    </message>
    <message>
        <source>No file links to this item.</source>
        <translation>Keine Datei verweist auf dieses Objekt.</translation>
    </message>
    <message>
        <source>missing link</source>
        <translation>fehlender Link</translation>
    </message>
    <message>
        <source>missing links</source>
        <translation>fehlende Links</translation>
    </message>
    <message>
        <source>link</source>
        <translation>Link</translation>
    </message>
    <message>
        <source>links</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>%1 in %2</source>
        <translation>%1 in %2</translation>
    </message>
    <message>
        <source>page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>; %1 with the name</source>
        <translation>; %1 mit dem Namen</translation>
    </message>
    <message>
        <source>file</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>; %1 can&apos;t be read</source>
        <translation>; %1 nicht lesbar</translation>
    </message>
    <message>
        <source>; %1 shown</source>
        <translation>; %1 gezeigt</translation>
    </message>
    <message>
        <source>row</source>
        <translation>Zeile</translation>
    </message>
    <message>
        <source>rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>. Stopped before all pages were checked.</source>
        <translation>. Angehalten, bevor alle Seiten geprüft waren.</translation>
    </message>
</context>
<context>
    <name>luma::LinkSheet</name>
    <message>
        <source>Insert image</source>
        <translation>Bild einfügen</translation>
    </message>
    <message>
        <source>Link</source>
        <translation>Link</translation>
    </message>
    <message>
        <source>IMG</source>
        <translation>IMG</translation>
    </message>
    <message>
        <source>Edit Link</source>
        <translation>Link bearbeiten</translation>
    </message>
    <message>
        <source>An address that runs a script can&apos;t be used</source>
        <translation>Eine Adresse, die ein Skript ausführt, ist hier nicht möglich</translation>
    </message>
    <message>
        <source>Not an address</source>
        <translation>Keine Adresse</translation>
    </message>
    <message>
        <source>The file is outside the site</source>
        <translation>Die Datei liegt außerhalb der Website</translation>
    </message>
    <message>
        <source>There is no such file in the site</source>
        <translation>In der Website gibt es keine solche Datei</translation>
    </message>
    <message>
        <source>Choose an image</source>
        <translation>Bild auswählen</translation>
    </message>
    <message>
        <source>Images (*.png *.jpg *.jpeg *.gif *.svg *.webp *.avif *.bmp *.ico);;All files (*)</source>
        <translation>Bilder (*.png *.jpg *.jpeg *.gif *.svg *.webp *.avif *.bmp *.ico);;Alle Dateien (*)</translation>
    </message>
</context>
<context>
    <name>luma::ManualWindow</name>
    <message>
        <source>LUMA Manual</source>
        <translation>LUMA-Handbuch</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Handbuch</translation>
    </message>
    <message>
        <source>Navigation</source>
        <translation>Navigation</translation>
    </message>
    <message>
        <source>Contents</source>
        <translation>Inhalt</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Search the manual</source>
        <translation>Im Handbuch suchen</translation>
    </message>
    <message>
        <source>Not found</source>
        <translation>Nicht gefunden</translation>
    </message>
</context>
<context>
    <name>luma::MountStep</name>
    <message>
        <source>%1: no such folder</source>
        <translation>%1: kein solcher Ordner</translation>
    </message>
</context>
<context>
    <name>luma::MoveJobs</name>
    <message>
        <source>Please wait while links in all possible files are being updated...</source>
        <translation>Bitte warten, während die Links in allen betroffenen Dateien angepasst werden …</translation>
    </message>
    <message>
        <source>An interrupted move was finished or taken back.</source>
        <translation>Ein unterbrochenes Bewegen wurde beendet oder zurückgenommen.</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>This can&apos;t be taken back.</source>
        <translation>Das lässt sich nicht zurücknehmen.</translation>
    </message>
    <message>
        <source>Leave it as it is for good? Edit &gt; Undo then takes back what was done before it.</source>
        <translation>Endgültig so lassen? Bearbeiten &gt; Rückgängig nimmt dann zurück, was davor getan wurde.</translation>
    </message>
    <message>
        <source>Leave It</source>
        <translation>So lassen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Nothing is changed yet: the changes are shown first.</source>
        <translation>Noch ist nichts geändert: die Änderungen werden zuerst gezeigt.</translation>
    </message>
    <message>
        <source>Replacing text...</source>
        <translation>Text wird ersetzt …</translation>
    </message>
    <message>
        <source>Renaming an id...</source>
        <translation>Eine ID wird umbenannt …</translation>
    </message>
    <message>
        <source>Renaming a class...</source>
        <translation>Eine Klasse wird umbenannt …</translation>
    </message>
</context>
<context>
    <name>luma::MyWebView</name>
    <message>
        <source>Page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>Inspect Element</source>
        <translation>Element untersuchen</translation>
    </message>
    <message>
        <source>Text Style</source>
        <translation>Textstil</translation>
    </message>
    <message>
        <source>Text Justification</source>
        <translation>Textausrichtung</translation>
    </message>
    <message>
        <source>No Suggestions</source>
        <translation>Keine Vorschläge</translation>
    </message>
</context>
<context>
    <name>luma::NewSiteAssistant</name>
    <message>
        <source>Fill In the &amp;Form Instead</source>
        <translation>Stattdessen das &amp;Formular ausfüllen</translation>
    </message>
    <message>
        <source>Choose the folder</source>
        <translation>Ordner auswählen</translation>
    </message>
    <message>
        <source>Choose the folder that holds the site&apos;s pages.</source>
        <translation>Wählen Sie den Ordner mit den Seiten der Website aus.</translation>
    </message>
    <message>
        <source>%1: no such folder</source>
        <translation>%1: kein solcher Ordner</translation>
    </message>
    <message>
        <source>Enter the server&apos;s name.</source>
        <translation>Geben Sie den Namen des Servers ein.</translation>
    </message>
    <message>
        <source>Choose the folder to publish to.</source>
        <translation>Wählen Sie den Ordner aus, in den veröffentlicht wird.</translation>
    </message>
    <message>
        <source>This is the folder of the pages. Choose another one.</source>
        <translation>Das ist der Ordner der Seiten. Wählen Sie einen anderen.</translation>
    </message>
    <message>
        <source>Connecting…</source>
        <translation>Verbindung wird aufgebaut …</translation>
    </message>
    <message>
        <source>The connection works.</source>
        <translation>Die Verbindung funktioniert.</translation>
    </message>
    <message>
        <source>%1 on %2</source>
        <translation>%1 auf %2</translation>
    </message>
    <message>
        <source>“%1” is edited in %2 and published to %3.</source>
        <translation>„%1“ wird in %2 bearbeitet und nach %3 veröffentlicht.</translation>
    </message>
</context>
<context>
    <name>luma::NodeChange</name>
    <message>
        <source>Another element has the ID %1 already.</source>
        <translation>Ein anderes Element hat bereits die ID %1.</translation>
    </message>
    <message>
        <source>&lt;%1&gt; can&apos;t stand here, or not with these contents.</source>
        <translation>&lt;%1&gt; kann hier nicht stehen, oder nicht mit diesem Inhalt.</translation>
    </message>
    <message>
        <source>A comment can&apos;t hold “--&gt;” or end in “--”.</source>
        <translation>Ein Kommentar kann „--&gt;“ nicht enthalten und nicht mit „--“ enden.</translation>
    </message>
    <message>
        <source>This is edited in the page&apos;s source.</source>
        <translation>Das wird im Quelltext der Seite bearbeitet.</translation>
    </message>
</context>
<context>
    <name>luma::NoticeBar</name>
    <message>
        <source>Reload</source>
        <translation>Neu laden</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>luma::OtherPrograms</name>
    <message>
        <source>The program is no longer installed</source>
        <translation>Das Programm ist nicht mehr installiert</translation>
    </message>
    <message>
        <source>No web browser is installed</source>
        <translation>Es ist kein Webbrowser installiert</translation>
    </message>
</context>
<context>
    <name>luma::OutlineEditor</name>
    <message>
        <source>Tag</source>
        <translation>Tag</translation>
    </message>
    <message>
        <source>New attribute</source>
        <translation>Neues Attribut</translation>
    </message>
    <message>
        <source>Attribute</source>
        <translation>Attribut</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>This is edited in the page&apos;s source.</source>
        <translation>Das wird im Quelltext der Seite bearbeitet.</translation>
    </message>
</context>
<context>
    <name>luma::OutlineFind</name>
    <message>
        <source>Not found</source>
        <translation>Nicht gefunden</translation>
    </message>
    <message>
        <source>%1 found</source>
        <translation>%1 gefunden</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
</context>
<context>
    <name>luma::OutlineMenu</name>
    <message>
        <source>Insert</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Add Class</source>
        <translation>Klasse hinzufügen</translation>
    </message>
    <message>
        <source>Remove Class</source>
        <translation>Klasse entfernen</translation>
    </message>
    <message>
        <source>Add ID</source>
        <translation>ID hinzufügen</translation>
    </message>
    <message>
        <source>Remove ID</source>
        <translation>ID entfernen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
</context>
<context>
    <name>luma::OutlineModel</name>
    <message>
        <source>Hidden</source>
        <translation>Ausgeblendet</translation>
    </message>
    <message>
        <source>Server code</source>
        <translation>Servercode</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
</context>
<context>
    <name>luma::PageActions</name>
    <message>
        <source>&amp;Undo %1</source>
        <translation>&amp;Rückgängig: %1</translation>
    </message>
    <message>
        <source>&amp;Redo %1</source>
        <translation>W&amp;iederholen: %1</translation>
    </message>
    <message>
        <source>No Recent Pages</source>
        <translation>Keine zuletzt geöffneten Seiten</translation>
    </message>
    <message>
        <source>No Web Browser</source>
        <translation>Kein Webbrowser</translation>
    </message>
    <message>
        <source>&amp;More...</source>
        <translation>&amp;Mehr ...</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>W&amp;iederholen</translation>
    </message>
</context>
<context>
    <name>luma::PageCommands</name>
    <message>
        <source>Change Title</source>
        <translation>Titel ändern</translation>
    </message>
    <message>
        <source>Move Up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>Duplicate</source>
        <translation>Duplizieren</translation>
    </message>
    <message>
        <source>Server Code</source>
        <translation>Servercode</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>Delete %1</source>
        <translation>%1 löschen</translation>
    </message>
    <message>
        <source>Move %1</source>
        <translation>%1 bewegen</translation>
    </message>
    <message>
        <source>Copy %1</source>
        <translation>%1 kopieren</translation>
    </message>
</context>
<context>
    <name>luma::PageEdits</name>
    <message>
        <source>Insert &lt;%1&gt;</source>
        <translation>&lt;%1&gt; einfügen</translation>
    </message>
    <message>
        <source>Add Class</source>
        <translation>Klasse hinzufügen</translation>
    </message>
    <message>
        <source>Remove Class</source>
        <translation>Klasse entfernen</translation>
    </message>
    <message>
        <source>Add ID</source>
        <translation>ID hinzufügen</translation>
    </message>
    <message>
        <source>Remove ID</source>
        <translation>ID entfernen</translation>
    </message>
    <message>
        <source>Update CSS</source>
        <translation>CSS ändern</translation>
    </message>
    <message>
        <source>A page may have only one &lt;%1&gt; like this.</source>
        <translation>Eine Seite darf nur ein solches &lt;%1&gt; haben.</translation>
    </message>
    <message>
        <source>Change Tag</source>
        <translation>Tag ändern</translation>
    </message>
    <message>
        <source>Add Attribute</source>
        <translation>Attribut hinzufügen</translation>
    </message>
    <message>
        <source>Remove Attribute</source>
        <translation>Attribut entfernen</translation>
    </message>
    <message>
        <source>Change Attribute</source>
        <translation>Attribut ändern</translation>
    </message>
    <message>
        <source>Change Text</source>
        <translation>Text ändern</translation>
    </message>
    <message>
        <source>Change Markup</source>
        <translation>Markup ändern</translation>
    </message>
    <message>
        <source>The page has changed meanwhile.</source>
        <translation>Die Seite wurde inzwischen geändert.</translation>
    </message>
    <message>
        <source>Insert Comment</source>
        <translation>Kommentar einfügen</translation>
    </message>
</context>
<context>
    <name>luma::PageSaver</name>
    <message>
        <source>Pages (*.html *.xhtml *.xml);;All files (*)</source>
        <translation>Seiten (*.html *.xhtml *.xml);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>Unbenannt</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>Sichern unter</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>“%1” is written in XHTML.</source>
        <translation>„%1“ ist in XHTML geschrieben.</translation>
    </message>
    <message>
        <source>Your edits can only be written as HTML. Browsers show it, but programs that read XML may refuse it. To keep this file unchanged, use Save As.</source>
        <translation>Ihre Änderungen lassen sich nur als HTML schreiben. Browser zeigen es, aber Programme, die XML lesen, lehnen es vielleicht ab. „Sichern unter“ lässt diese Datei unverändert.</translation>
    </message>
    <message>
        <source>Save as HTML</source>
        <translation>Als HTML sichern</translation>
    </message>
    <message>
        <source>“%1” holds elements that can&apos;t be edited here.</source>
        <translation>„%1“ enthält Elemente, die hier nicht bearbeitet werden können.</translation>
    </message>
    <message>
        <source>Saving leaves out everything in &lt;select&gt; except its options: %1. To keep this file unchanged, use Save As.</source>
        <translation>Beim Sichern entfällt alles in &lt;select&gt; außer den Optionen: %1. „Sichern unter“ lässt diese Datei unverändert.</translation>
    </message>
    <message>
        <source>Leave Out</source>
        <translation>Weglassen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Save the changes to “%1”?</source>
        <translation>Die Änderungen an „%1“ sichern?</translation>
    </message>
    <message>
        <source>New Page From</source>
        <translation>Neue Seite aus</translation>
    </message>
    <message>
        <source>Save as Template</source>
        <translation>Als Vorlage sichern</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Sichern</translation>
    </message>
</context>
<context>
    <name>luma::PageSpelling</name>
    <message>
        <source>No spelling dictionary is installed for: %1</source>
        <translation>Es ist kein Rechtschreibwörterbuch installiert für: %1</translation>
    </message>
    <message>
        <source>To check the spelling, install the package qt6-webengine-dev-tools.</source>
        <translation>Installieren Sie das Paket qt6-webengine-dev-tools, um die Rechtschreibung zu prüfen.</translation>
    </message>
</context>
<context>
    <name>luma::PageTools</name>
    <message>
        <source>The preview with scripts is starting.</source>
        <translation>Die Vorschau mit Skripten startet.</translation>
    </message>
</context>
<context>
    <name>luma::PaneLinks</name>
    <message>
        <source>Unlinked items in %1</source>
        <translation>Unverlinkte Dateien: %1</translation>
    </message>
</context>
<context>
    <name>luma::PaneMenu</name>
    <message>
        <source>&amp;Copy Path</source>
        <translation>Pfad k&amp;opieren</translation>
    </message>
    <message>
        <source>Copy Relative L&amp;ink</source>
        <translation>Relativen L&amp;ink kopieren</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <source>Open &amp;With</source>
        <translation>Öffnen &amp;mit</translation>
    </message>
    <message>
        <source>Open in &amp;Browser</source>
        <translation>Im Bro&amp;wser öffnen</translation>
    </message>
    <message>
        <source>&amp;New Folder</source>
        <translation>&amp;Neuer Ordner</translation>
    </message>
    <message>
        <source>D&amp;uplicate</source>
        <translation>Du&amp;plizieren</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <source>&amp;Delete...</source>
        <translation>&amp;Löschen …</translation>
    </message>
    <message>
        <source>&amp;Missing Links</source>
        <translation>Fehlende Lin&amp;ks</translation>
    </message>
    <message>
        <source>Un&amp;linked Items</source>
        <translation>Un&amp;verlinkte Dateien</translation>
    </message>
    <message>
        <source>R&amp;eload</source>
        <translation>Aktuali&amp;sieren</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <source>Cop&amp;y</source>
        <translation>Kopi&amp;eren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>Einset&amp;zen</translation>
    </message>
    <message>
        <source>Propertie&amp;s</source>
        <translation>Eigensc&amp;haften</translation>
    </message>
    <message>
        <source>Show in &amp;File Manager</source>
        <translation>Im &amp;Dateimanager zeigen</translation>
    </message>
    <message>
        <source>Show Lin&amp;ks From Item...</source>
        <translation>Links von diesem Ob&amp;jekt zeigen …</translation>
    </message>
    <message>
        <source>S&amp;how Links To Item...</source>
        <translation>Links zu diesem Objekt zei&amp;gen …</translation>
    </message>
</context>
<context>
    <name>luma::PanelJobs</name>
    <message>
        <source>Stopped before all pages were looked at.</source>
        <translation>Angehalten, bevor alle Seiten angesehen waren.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>luma::PlanPreview</name>
    <message>
        <source>&amp;Ask before changing more than %1</source>
        <translation>&amp;Fragen bei Änderungen an mehr als %1</translation>
    </message>
    <message>
        <source>page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>Change Links</source>
        <translation>Links ändern</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Bewegen</translation>
    </message>
    <message>
        <source>%1 on %2 will change.</source>
        <translation>Zu ändern: %1 auf %2.</translation>
    </message>
    <message>
        <source>link</source>
        <translation>Link</translation>
    </message>
    <message>
        <source>links</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Edit &gt; Undo takes it back.</source>
        <translation>Bearbeiten &gt; Rückgängig nimmt es zurück.</translation>
    </message>
    <message>
        <source>A symbolic link will get a new target.</source>
        <translation>Ein symbolischer Link bekommt ein neues Ziel.</translation>
    </message>
    <message>
        <source>%1 symbolic links will get new targets.</source>
        <translation>%1 symbolische Links bekommen neue Ziele.</translation>
    </message>
    <message>
        <source>In the site that is left, %1 on %2 will be missing.</source>
        <translation>In der bisherigen Site fehlen dann: %1 auf %2.</translation>
    </message>
    <message>
        <source>Change Links Anyway</source>
        <translation>Links trotzdem ändern</translation>
    </message>
    <message>
        <source>Copy Anyway</source>
        <translation>Trotzdem kopieren</translation>
    </message>
    <message>
        <source>Rename Anyway</source>
        <translation>Trotzdem umbenennen</translation>
    </message>
    <message>
        <source>Move Anyway</source>
        <translation>Trotzdem verschieben</translation>
    </message>
    <message>
        <source>%1 and %2</source>
        <translation>%1 und %2</translation>
    </message>
    <message>
        <source>other</source>
        <translation>weitere</translation>
    </message>
    <message>
        <source>others</source>
        <translation>weitere</translation>
    </message>
    <message>
        <source>Can&apos;t be changed or read: %1. If you go on, links there may break.</source>
        <translation>Nicht änderbar oder nicht lesbar: %1. Wenn Sie fortfahren, können Links dort ins Leere führen.</translation>
    </message>
    <message>
        <source>Places that change</source>
        <translation>Stellen, die sich ändern</translation>
    </message>
    <message>
        <source>%1 in %2 will change.</source>
        <translation>%1 in %2 werden geändert.</translation>
    </message>
    <message>
        <source>place</source>
        <translation>Stelle</translation>
    </message>
    <message>
        <source>places</source>
        <translation>Stellen</translation>
    </message>
    <message>
        <source>file</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Can&apos;t be changed or read: %1. If you go on, they stay as they are.</source>
        <translation>Nicht änderbar oder nicht lesbar: %1. Wenn Sie fortfahren, bleibt es dort, wie es ist.</translation>
    </message>
</context>
<context>
    <name>luma::PreferencesDialog</name>
    <message>
        <source>The desktop&apos;s</source>
        <translation>Die der Arbeitsumgebung</translation>
    </message>
    <message>
        <source>Folder of templates</source>
        <translation>Ordner der Vorlagen</translation>
    </message>
</context>
<context>
    <name>luma::PreviewProcess</name>
    <message>
        <source>The preview with scripts can&apos;t be started: %1</source>
        <translation>Die Vorschau mit Skripten kann nicht gestartet werden: %1</translation>
    </message>
    <message>
        <source>The preview with scripts does not answer.</source>
        <translation>Die Vorschau mit Skripten antwortet nicht.</translation>
    </message>
    <message>
        <source>The preview with scripts has ended by itself.</source>
        <translation>Die Vorschau mit Skripten hat sich von selbst beendet.</translation>
    </message>
</context>
<context>
    <name>luma::ProcessRecovery</name>
    <message>
        <source>The page can&apos;t be shown: its process ended several times.
The page and your edits are kept.</source>
        <translation>Die Seite kann nicht gezeigt werden: Ihr Prozess wurde mehrmals beendet.
Die Seite und Ihre Änderungen bleiben erhalten.</translation>
    </message>
    <message>
        <source>Show again</source>
        <translation>Erneut zeigen</translation>
    </message>
</context>
<context>
    <name>luma::Program</name>
    <message>
        <source>Publish Page</source>
        <translation>Seite veröffentlichen</translation>
    </message>
    <message>
        <source>No site in the list has a source folder with this page.</source>
        <translation>Keine Website der Liste hat einen Quellordner mit dieser Seite.</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>Unbenannt</translation>
    </message>
    <message>
        <source>Unsaved pages</source>
        <translation>Nicht gesicherte Seiten</translation>
    </message>
    <message>
        <source>LUMA ended before the edits of these pages were saved.</source>
        <translation>LUMA endete, bevor die Änderungen an diesen Seiten gesichert waren.</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Später</translation>
    </message>
    <message>
        <source>%1 is in no site of the list.</source>
        <translation>%1 gehört zu keiner Website der Liste.</translation>
    </message>
    <message>
        <source>LUMA edits pages (.html, .xhtml, .xml) and shows other files and folders in the window of their site. Add the site with its folder first.</source>
        <translation>LUMA bearbeitet Seiten (.html, .xhtml, .xml) und zeigt andere Dateien und Ordner im Fenster ihrer Website. Fügen Sie zuerst die Website mit ihrem Ordner hinzu.</translation>
    </message>
    <message>
        <source>Find in Site</source>
        <translation>In der Website suchen</translation>
    </message>
    <message>
        <source>Classes and IDs</source>
        <translation>Klassen und IDs</translation>
    </message>
</context>
<context>
    <name>luma::ProgressPanel</name>
    <message>
        <source>Save the log</source>
        <translation>Protokoll sichern</translation>
    </message>
    <message>
        <source>Text (*.txt)</source>
        <translation>Text (*.txt)</translation>
    </message>
    <message>
        <source>The log could not be saved</source>
        <translation>Das Protokoll konnte nicht gesichert werden</translation>
    </message>
</context>
<context>
    <name>luma::RemoteLogin</name>
    <message>
        <source>The destination has no server or no user. Enter both in its settings.</source>
        <translation>Dem Ziel fehlt der Server oder der Benutzer. Geben Sie beides in seinen Einstellungen ein.</translation>
    </message>
    <message>
        <source>The destination has changed since the last check. Choose Check Connection in the menu Site.</source>
        <translation>Das Ziel hat sich seit der letzten Prüfung geändert. Wählen Sie „Verbindung prüfen“ im Menü „Website“.</translation>
    </message>
    <message>
        <source>Login works, but the server&apos;s /usr/local/palisan/apache2/httpd.conf has no line that begins with LogFormat and ends with Tallyweb. Add one, or ask the server&apos;s operator to, and choose Check Connection in the menu Site.</source>
        <translation>Die Anmeldung gelingt, aber /usr/local/palisan/apache2/httpd.conf auf dem Server hat keine Zeile, die mit LogFormat beginnt und mit Tallyweb endet. Fügen Sie eine hinzu, oder bitten Sie den Betreiber des Servers darum, und wählen Sie „Verbindung prüfen“ im Menü „Website“.</translation>
    </message>
    <message>
        <source>The server does not accept your key yet. Choose Set Up Remote Login.</source>
        <translation>Der Server nimmt Ihren Schlüssel noch nicht an. Wählen Sie „Remote Login einrichten“.</translation>
    </message>
    <message>
        <source>The account is for sftp only, and rsync needs one that may run commands. Ask the server&apos;s operator for it, or go on without: LUMA then copies file by file.</source>
        <translation>Das Konto ist nur für sftp; rsync braucht eines, das Befehle ausführen darf. Bitten Sie den Betreiber des Servers darum, oder arbeiten Sie ohne: LUMA kopiert dann Datei für Datei.</translation>
    </message>
    <message>
        <source>The server did not answer within 15 seconds. Check server and SSH port, and choose Check Connection in the menu Site.</source>
        <translation>Der Server hat nicht innerhalb von 15 Sekunden geantwortet. Prüfen Sie Server und SSH-Port, und wählen Sie „Verbindung prüfen“ im Menü „Website“.</translation>
    </message>
    <message>
        <source>No ssh server answers there. Check server, user and SSH port in the destination&apos;s settings.</source>
        <translation>Dort antwortet kein ssh-Server. Prüfen Sie Server, Benutzer und SSH-Port in den Einstellungen des Ziels.</translation>
    </message>
    <message>
        <source>Your key ~/.ssh/id_rsa has a passphrase. Remove it with ssh-keygen -p, or load the key into ssh-agent before LUMA starts.</source>
        <translation>Ihr Schlüssel ~/.ssh/id_rsa ist durch ein Passwort geschützt. Entfernen Sie es mit ssh-keygen -p, oder laden Sie den Schlüssel in ssh-agent, bevor LUMA startet.</translation>
    </message>
</context>
<context>
    <name>luma::ReplaceBar</name>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Replace All</source>
        <translation>Alle ersetzen</translation>
    </message>
    <message>
        <source>Not found</source>
        <translation>Nicht gefunden</translation>
    </message>
    <message>
        <source>%1 found</source>
        <translation>%1 gefunden</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>Find in the style sheet</source>
        <translation>Im Stylesheet suchen</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Find in the page</source>
        <translation>In der Seite suchen</translation>
    </message>
    <message>
        <source>Searching…</source>
        <translation>Suchen …</translation>
    </message>
</context>
<context>
    <name>luma::RestorePanel</name>
    <message>
        <source>%1: one file</source>
        <translation>%1: eine Datei</translation>
    </message>
    <message>
        <source>%1: %2 files</source>
        <translation>%1: %2 Dateien</translation>
    </message>
    <message>
        <source>One of the files has been changed there since the last publish. Replace it all the same?</source>
        <translation>Eine der Dateien wurde dort seit der letzten Veröffentlichung geändert. Trotzdem ersetzen?</translation>
    </message>
    <message>
        <source>%1 of the files have been changed there since the last publish. Replace them all the same?</source>
        <translation>%1 der Dateien wurden dort seit der letzten Veröffentlichung geändert. Trotzdem ersetzen?</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Looking for old versions</source>
        <translation>Alte Fassungen werden gesucht</translation>
    </message>
    <message>
        <source>Comparing with what is there now</source>
        <translation>Vergleich mit dem, was jetzt dort ist</translation>
    </message>
    <message>
        <source>No old versions are kept.
To keep what a publish replaces or deletes, set &quot;Keep old versions&quot; in the site&apos;s form.</source>
        <translation>Es sind keine alten Fassungen vorhanden.
Um zu behalten, was eine Veröffentlichung ersetzt oder löscht, stellen Sie „Alte Fassungen behalten“ im Formular der Website ein.</translation>
    </message>
    <message>
        <source>All files of this publish are back in their places.</source>
        <translation>Alle Dateien dieser Veröffentlichung sind wieder an ihrem Platz.</translation>
    </message>
    <message>
        <source>The old versions can&apos;t be listed.</source>
        <translation>Die alten Fassungen können nicht aufgelistet werden.</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stopp</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>luma::ScriptConsole</name>
    <message>
        <source>Saved as %1</source>
        <translation>Gesichert als %1</translation>
    </message>
</context>
<context>
    <name>luma::ScriptPreview</name>
    <message>
        <source>Preview with scripts</source>
        <translation>Vorschau mit Skripten</translation>
    </message>
    <message>
        <source>Refused requests and messages of scripts</source>
        <translation>Verweigerte Anfragen und Meldungen der Skripte</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Neu laden</translation>
    </message>
    <message>
        <source>Show the page as it is in the editor now</source>
        <translation>Zeigt die Seite, wie sie jetzt im Editor ist</translation>
    </message>
    <message>
        <source>Stop Scripts</source>
        <translation>Skripte anhalten</translation>
    </message>
    <message>
        <source>End everything that runs in the preview</source>
        <translation>Beendet alles, was in der Vorschau läuft</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Refused</source>
        <translation>Verweigert</translation>
    </message>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>line %1: %2</source>
        <translation>Zeile %1: %2</translation>
    </message>
    <message>
        <source>The scripts were stopped. Reload starts the page anew.</source>
        <translation>Die Skripte wurden angehalten. „Neu laden“ startet die Seite neu.</translation>
    </message>
    <message>
        <source>The page has ended by itself. Reload starts it anew.</source>
        <translation>Die Seite hat sich selbst beendet. „Neu laden“ startet sie neu.</translation>
    </message>
    <message>
        <source>Scripts run here. Requests to the network and for files outside the site are refused.</source>
        <translation>Hier laufen Skripte. Anfragen ins Netz und nach Dateien außerhalb der Website werden verweigert.</translation>
    </message>
    <message>
        <source>A script does not end. Stop Scripts (Escape) ends it.</source>
        <translation>Ein Skript endet nicht. „Skripte anhalten“ (Escape) beendet es.</translation>
    </message>
    <message>
        <source>There is more, which is not listed.</source>
        <translation>Es gibt mehr, das hier nicht steht.</translation>
    </message>
    <message>
        <source>Preview with Scripts</source>
        <translation>Vorschau mit Skripten</translation>
    </message>
    <message>
        <source>%1 – Preview with Scripts</source>
        <translation>%1 – Vorschau mit Skripten</translation>
    </message>
    <message>
        <source>Window not opened</source>
        <translation>Fenster nicht geöffnet</translation>
    </message>
    <message>
        <source>Not found in the site</source>
        <translation>In der Website nicht gefunden</translation>
    </message>
</context>
<context>
    <name>luma::SideMark</name>
    <message>
        <source>only on this side</source>
        <translation>nur auf dieser Seite</translation>
    </message>
    <message>
        <source>newer on this side</source>
        <translation>neuer auf dieser Seite</translation>
    </message>
    <message>
        <source>newer on the other side</source>
        <translation>neuer auf der anderen Seite</translation>
    </message>
    <message>
        <source>different on the other side</source>
        <translation>anders auf der anderen Seite</translation>
    </message>
</context>
<context>
    <name>luma::SiteFindPanel</name>
    <message>
        <source>No row matches the filter.</source>
        <translation>Keine Zeile passt zum Filter.</translation>
    </message>
    <message>
        <source>Enter a text and press Return to look for it in all pages of the site.</source>
        <translation>Geben Sie einen Text ein, und drücken Sie die Eingabetaste, um ihn in allen Seiten der Website zu suchen.</translation>
    </message>
    <message>
        <source>Looking through the files of the site</source>
        <translation>Die Dateien der Website werden durchgesehen</translation>
    </message>
    <message>
        <source>Stopped before all files were searched.</source>
        <translation>Angehalten, bevor alle Dateien durchsucht waren.</translation>
    </message>
    <message>
        <source>Not found.</source>
        <translation>Nicht gefunden.</translation>
    </message>
    <message>
        <source>%1 in %2</source>
        <translation>%1 in %2</translation>
    </message>
    <message>
        <source>place</source>
        <translation>Stelle</translation>
    </message>
    <message>
        <source>places</source>
        <translation>Stellen</translation>
    </message>
    <message>
        <source>file</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>; %1 ticked in %2</source>
        <translation>; %1 angehakt in %2</translation>
    </message>
    <message>
        <source>; %1 shown</source>
        <translation>; %1 angezeigt</translation>
    </message>
    <message>
        <source>; %1 can&apos;t be searched</source>
        <translation>; %1 nicht durchsuchbar</translation>
    </message>
    <message>
        <source>. Stopped before all files were searched.</source>
        <translation>. Angehalten, bevor alle Dateien durchsucht waren.</translation>
    </message>
    <message>
        <source>Everything is replaced. Undo in the site&apos;s window takes it back.</source>
        <translation>Alles ist ersetzt. „Rückgängig“ im Fenster der Website nimmt es zurück.</translation>
    </message>
</context>
<context>
    <name>luma::SiteFindRun</name>
    <message>
        <source>There is more: the search ended after %1 places.</source>
        <translation>Es gibt noch mehr: Die Suche endete nach %1 Stellen.</translation>
    </message>
</context>
<context>
    <name>luma::SiteForm</name>
    <message>
        <source>Source: the working copy</source>
        <translation>Quelle: die Arbeitskopie</translation>
    </message>
    <message>
        <source>Destination: the web server</source>
        <translation>Ziel: der Webserver</translation>
    </message>
</context>
<context>
    <name>luma::SiteItemDelegate</name>
    <message>
        <source>Unnamed site</source>
        <translation>Website ohne Namen</translation>
    </message>
</context>
<context>
    <name>luma::SiteList</name>
    <message>
        <source>&amp;Undo move</source>
        <translation>&amp;Rückgängig: Bewegen</translation>
    </message>
    <message>
        <source>&amp;Undo removal of “%1”</source>
        <translation>&amp;Rückgängig: „%1“ entfernen</translation>
    </message>
    <message>
        <source>&amp;Undo renaming of folder</source>
        <translation>&amp;Rückgängig: Ordner umbenennen</translation>
    </message>
</context>
<context>
    <name>luma::SiteListTree</name>
    <message>
        <source>New folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message>
        <source>New folder %1</source>
        <translation>Neuer Ordner %1</translation>
    </message>
</context>
<context>
    <name>luma::SiteListView</name>
    <message>
        <source>&amp;None</source>
        <translation>&amp;Keiner</translation>
    </message>
</context>
<context>
    <name>luma::SiteListWindow</name>
    <message>
        <source>No sites yet</source>
        <translation>Noch keine Websites</translation>
    </message>
    <message>
        <source>No site matches the search.</source>
        <translation>Keine Website passt zur Suche.</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>The list of sites is not saved. %1</source>
        <translation>Die Liste der Websites ist nicht gesichert. %1</translation>
    </message>
</context>
<context>
    <name>luma::SiteNamesModel</name>
    <message>
        <source>unused</source>
        <translation>unbenutzt</translation>
    </message>
    <message>
        <source>only in scripts</source>
        <translation>nur in Skripten</translation>
    </message>
    <message>
        <source>no rule</source>
        <translation>keine Regel</translation>
    </message>
    <message>
        <source>link or label</source>
        <translation>Link oder Beschriftung</translation>
    </message>
    <message>
        <source>links or labels</source>
        <translation>Links oder Beschriftungen</translation>
    </message>
    <message>
        <source>in scripts</source>
        <translation>in Skripten</translation>
    </message>
    <message>
        <source>%1:%2</source>
        <translation>%1:%2</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Rules</source>
        <translation>Regeln</translation>
    </message>
    <message>
        <source>Elements</source>
        <translation>Elemente</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Hinweis</translation>
    </message>
</context>
<context>
    <name>luma::SiteNamesPanel</name>
    <message>
        <source>&amp;Rename...</source>
        <translation>&amp;Umbenennen …</translation>
    </message>
    <message>
        <source>Rename Id</source>
        <translation>ID umbenennen</translation>
    </message>
    <message>
        <source>Rename Class</source>
        <translation>Klasse umbenennen</translation>
    </message>
    <message>
        <source>New name of %1 in all pages and style sheets:</source>
        <translation>Neuer Name von %1 in allen Seiten und Stylesheets:</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>No name matches the filter.</source>
        <translation>Kein Name passt zum Filter.</translation>
    </message>
    <message>
        <source>Looking through the files of the site</source>
        <translation>Die Dateien der Website werden durchgesehen</translation>
    </message>
    <message>
        <source>The site has no classes and no ids.</source>
        <translation>Die Website hat keine Klassen und keine IDs.</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>class</source>
        <translation>Klasse</translation>
    </message>
    <message>
        <source>classes</source>
        <translation>Klassen</translation>
    </message>
    <message>
        <source>id</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>ids</source>
        <translation>IDs</translation>
    </message>
    <message>
        <source>; %1 unused</source>
        <translation>; %1 unbenutzt</translation>
    </message>
    <message>
        <source>; %1 shown</source>
        <translation>; %1 angezeigt</translation>
    </message>
</context>
<context>
    <name>luma::SitePasswords</name>
    <message>
        <source>LUMA: %1</source>
        <translation>LUMA: %1</translation>
    </message>
</context>
<context>
    <name>luma::SiteTemplate</name>
    <message>
        <source>New site</source>
        <translation>Neue Website</translation>
    </message>
    <message>
        <source>Sample site</source>
        <translation>Beispielwebsite</translation>
    </message>
</context>
<context>
    <name>luma::SizeHandles</name>
    <message>
        <source>A style sheet sets the size of this element: %1. It can be changed in the style rules.</source>
        <translation>Ein Stylesheet legt die Größe dieses Elements fest: %1. Sie lässt sich in den Stilregeln ändern.</translation>
    </message>
</context>
<context>
    <name>luma::SourcePanel</name>
    <message>
        <source>Discard the changes to the page source?</source>
        <translation>Die Änderungen am Quelltext der Seite verwerfen?</translation>
    </message>
    <message>
        <source>Not found</source>
        <translation>Nicht gefunden</translation>
    </message>
    <message>
        <source>Line %1, column %2: %3</source>
        <translation>Zeile %1, Spalte %2: %3</translation>
    </message>
</context>
<context>
    <name>luma::StyleEdits</name>
    <message>
        <source>The style sheet has changed meanwhile.</source>
        <translation>Das Stylesheet hat sich inzwischen geändert.</translation>
    </message>
    <message>
        <source>Move Style to Class</source>
        <translation>Stil in Klasse verschieben</translation>
    </message>
</context>
<context>
    <name>luma::StyleRulesModel</name>
    <message>
        <source>Style attribute</source>
        <translation>Stilattribut</translation>
    </message>
    <message>
        <source>Pseudo-element %1</source>
        <translation>Pseudoelement %1</translation>
    </message>
    <message>
        <source>Inherited from %1</source>
        <translation>Geerbt von %1</translation>
    </message>
    <message>
        <source>Overridden by a more important declaration</source>
        <translation>Von einer wichtigeren Deklaration überschrieben</translation>
    </message>
    <message>
        <source>Not known to the web engine, which leaves it out</source>
        <translation>Der Web-Engine unbekannt; sie lässt dies aus</translation>
    </message>
    <message>
        <source>Not inherited</source>
        <translation>Wird nicht vererbt</translation>
    </message>
    <message>
        <source>Switched off: a comment in the style sheet</source>
        <translation>Ausgeschaltet: ein Kommentar im Stylesheet</translation>
    </message>
    <message>
        <source>Property</source>
        <translation>Eigenschaft</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Rule %1, %2</source>
        <translation>Regel %1, %2</translation>
    </message>
    <message>
        <source>Add...</source>
        <translation>Hinzufügen …</translation>
    </message>
    <message>
        <source>Type a property and its value, such as “color: red”.</source>
        <translation>Geben Sie eine Eigenschaft und ihren Wert ein, etwa „color: red“.</translation>
    </message>
    <message>
        <source>A click on the colour or Alt+Down chooses another one</source>
        <translation>Ein Klick auf die Farbe oder Alt+Pfeil nach unten wählt eine andere</translation>
    </message>
    <message>
        <source>A click on the colour or Alt+Down changes the custom property</source>
        <translation>Ein Klick auf die Farbe oder Alt+Pfeil nach unten ändert die benutzerdefinierte Eigenschaft</translation>
    </message>
</context>
<context>
    <name>luma::StyleRulesPanel</name>
    <message>
        <source>Property and value</source>
        <translation>Eigenschaft und Wert</translation>
    </message>
    <message>
        <source>Style rules of &lt;%1&gt;</source>
        <translation>Stilregeln von &lt;%1&gt;</translation>
    </message>
    <message>
        <source>Style rules</source>
        <translation>Stilregeln</translation>
    </message>
    <message>
        <source>Change Style</source>
        <translation>Stil ändern</translation>
    </message>
    <message>
        <source>Switch Style On</source>
        <translation>Stil einschalten</translation>
    </message>
    <message>
        <source>Switch Style Off</source>
        <translation>Stil ausschalten</translation>
    </message>
    <message>
        <source>Add Style</source>
        <translation>Stil hinzufügen</translation>
    </message>
    <message>
        <source>Remove Style</source>
        <translation>Stil entfernen</translation>
    </message>
    <message>
        <source>The page has no style sheet of its site</source>
        <translation>Die Seite hat kein Stylesheet ihrer Website</translation>
    </message>
    <message>
        <source>New Rule</source>
        <translation>Neue Regel</translation>
    </message>
    <message>
        <source>&amp;Move Inline Style to a Class...</source>
        <translation>&amp;Stilattribut in eine Klasse verschieben …</translation>
    </message>
    <message>
        <source>style element of the page</source>
        <translation>Style-Element der Seite</translation>
    </message>
</context>
<context>
    <name>luma::StyleSheetEditor</name>
    <message>
        <source>Update CSS</source>
        <translation>CSS ändern</translation>
    </message>
    <message>
        <source>Save CSS</source>
        <translation>CSS sichern</translation>
    </message>
    <message>
        <source>%1, not saved</source>
        <translation>%1, nicht gespeichert</translation>
    </message>
</context>
<context>
    <name>luma::SyncEngine</name>
    <message>
        <source>Move these new/modified files from Source to Destination?</source>
        <translation>Diese neuen und geänderten Dateien von der Quelle zum Ziel übertragen?</translation>
    </message>
    <message>
        <source>Move these new/modified files from Destination to Source?</source>
        <translation>Diese neuen und geänderten Dateien vom Ziel zur Quelle übertragen?</translation>
    </message>
    <message>
        <source>Nothing changed from Source to Destination</source>
        <translation>Von der Quelle zum Ziel hat sich nichts geändert</translation>
    </message>
    <message>
        <source>Nothing changed from Destination to Source</source>
        <translation>Vom Ziel zur Quelle hat sich nichts geändert</translation>
    </message>
    <message>
        <source>%1 (and %2 more)</source>
        <translation>%1 (und %2 weitere)</translation>
    </message>
    <message>
        <source>The sending side has no files; its disk or share may not be mounted.</source>
        <translation>Die sendende Seite hat keine Dateien; vielleicht ist ihr Datenträger oder ihre Freigabe nicht eingehängt.</translation>
    </message>
    <message>
        <source>The comparison failed</source>
        <translation>Der Vergleich ist fehlgeschlagen</translation>
    </message>
    <message>
        <source>Stopped; %1 of %2 moved</source>
        <translation>Angehalten; %1 von %2 übertragen</translation>
    </message>
    <message>
        <source>No more files to be moved.</source>
        <translation>Keine Dateien mehr zu übertragen.</translation>
    </message>
</context>
<context>
    <name>luma::SyncGuards</name>
    <message>
        <source>The sending side has no files at all; its disk or share may not be mounted. Delete %1 on the receiving side?</source>
        <translation>Die sendende Seite hat überhaupt keine Dateien; vielleicht ist ihr Datenträger oder ihre Freigabe nicht eingehängt. Auf der Empfängerseite %1 löschen?</translation>
    </message>
    <message>
        <source>More than a third of the receiving side would be deleted: %1 of %2 files. Delete them?</source>
        <translation>Mehr als ein Drittel der Empfängerseite würde gelöscht: %1 von %2 Dateien. Löschen?</translation>
    </message>
    <message>
        <source>The two folders have no file in common. Is the receiving folder the right one?</source>
        <translation>Die beiden Ordner haben keine Datei gemeinsam. Ist der empfangende Ordner der richtige?</translation>
    </message>
    <message>
        <source>The receiving disk has %1 free, but %2 are needed. Try it all the same?</source>
        <translation>Auf dem empfangenden Datenträger sind %1 frei, aber %2 sind nötig. Trotzdem versuchen?</translation>
    </message>
</context>
<context>
    <name>luma::SyncPanel</name>
    <message>
        <source>All changes</source>
        <translation>Alle Änderungen</translation>
    </message>
    <message>
        <source>Move anyway</source>
        <translation>Trotzdem übertragen</translation>
    </message>
    <message>
        <source>Tick selected</source>
        <translation>Auswahl ankreuzen</translation>
    </message>
    <message>
        <source>Untick selected</source>
        <translation>Auswahl abwählen</translation>
    </message>
    <message>
        <source>Tick all of this kind</source>
        <translation>Alle dieser Art ankreuzen</translation>
    </message>
    <message>
        <source>Untick all of this kind</source>
        <translation>Alle dieser Art abwählen</translation>
    </message>
    <message>
        <source>Tick all in this folder</source>
        <translation>Alle in diesem Ordner ankreuzen</translation>
    </message>
    <message>
        <source>Untick all in this folder</source>
        <translation>Alle in diesem Ordner abwählen</translation>
    </message>
    <message>
        <source>Show in pane</source>
        <translation>Im Bereich zeigen</translation>
    </message>
    <message>
        <source>Compare...</source>
        <translation>Vergleichen …</translation>
    </message>
    <message>
        <source>Publish only selected</source>
        <translation>Nur die Auswahl veröffentlichen</translation>
    </message>
    <message>
        <source>Never publish this</source>
        <translation>Nie veröffentlichen</translation>
    </message>
    <message>
        <source>The name is not UTF-8, so no pattern can name it.</source>
        <translation>Der Name ist kein UTF-8, daher kann kein Muster ihn nennen.</translation>
    </message>
    <message>
        <source>%1 of %2, %3 of %4</source>
        <translation>%1 von %2, %3 von %4</translation>
    </message>
    <message>
        <source>, %1 a second, %2 seconds left</source>
        <translation>, %1 je Sekunde, noch %2 Sekunden</translation>
    </message>
    <message>
        <source>only the selected items</source>
        <translation>nur die ausgewählten Objekte</translation>
    </message>
    <message>
        <source>%1 to move</source>
        <translation>%1 zu übertragen</translation>
    </message>
    <message>
        <source>%1 to delete</source>
        <translation>%1 zu löschen</translation>
    </message>
    <message>
        <source>%1 ignored</source>
        <translation>%1 ignoriert</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stopp</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Comparing both sides</source>
        <translation>Beide Seiten werden verglichen</translation>
    </message>
    <message>
        <source>Every file is there, and none is newer.</source>
        <translation>Alle Dateien sind dort, und keine ist neuer.</translation>
    </message>
    <message>
        <source>Every selected file is there, and none is newer.</source>
        <translation>Alle ausgewählten Dateien sind dort, und keine ist neuer.</translation>
    </message>
    <message>
        <source>To look the other way, choose the other direction above.</source>
        <translation>Für die andere Richtung wählen Sie diese oben aus.</translation>
    </message>
    <message>
        <source>Nothing is known about the files on either side.</source>
        <translation>Über die Dateien ist auf beiden Seiten nichts bekannt.</translation>
    </message>
    <message>
        <source>All files have been moved.</source>
        <translation>Alle Dateien sind übertragen.</translation>
    </message>
    <message>
        <source>&amp;Go On</source>
        <translation>&amp;Weiter</translation>
    </message>
    <message>
        <source>&amp;Move</source>
        <translation>Ü&amp;bertragen</translation>
    </message>
</context>
<context>
    <name>luma::SyncTableModel</name>
    <message>
        <source>Not on the receiving side</source>
        <translation>Nicht auf der Empfängerseite</translation>
    </message>
    <message>
        <source>Newer than on the receiving side</source>
        <translation>Neuer als auf der Empfängerseite</translation>
    </message>
    <message>
        <source>Same time, but another size</source>
        <translation>Gleiche Zeit, aber andere Größe</translation>
    </message>
    <message>
        <source>The links lead to different places</source>
        <translation>Die Links führen zu verschiedenen Orten</translation>
    </message>
    <message>
        <source>A file on one side, a link on the other</source>
        <translation>Auf einer Seite eine Datei, auf der anderen ein Link</translation>
    </message>
    <message>
        <source>A folder stands in its place</source>
        <translation>An dieser Stelle steht ein Ordner</translation>
    </message>
    <message>
        <source>Only on the receiving side</source>
        <translation>Nur auf der Empfängerseite</translation>
    </message>
    <message>
        <source>An empty folder, only on the receiving side</source>
        <translation>Ein leerer Ordner, nur auf der Empfängerseite</translation>
    </message>
    <message>
        <source>Deleted there since the last publish</source>
        <translation>Dort seit der letzten Veröffentlichung gelöscht</translation>
    </message>
    <message>
        <source>Changed since the last publish, but not newer</source>
        <translation>Seit der letzten Veröffentlichung geändert, aber nicht neuer</translation>
    </message>
    <message>
        <source>Changed there since the last publish</source>
        <translation>Dort seit der letzten Veröffentlichung geändert</translation>
    </message>
    <message>
        <source>Changed on both sides since the last publish</source>
        <translation>Auf beiden Seiten seit der letzten Veröffentlichung geändert</translation>
    </message>
    <message>
        <source>Deleted since the last publish</source>
        <translation>Seit der letzten Veröffentlichung gelöscht</translation>
    </message>
    <message>
        <source>Deleted, but changed there since the last publish</source>
        <translation>Gelöscht, aber dort seit der letzten Veröffentlichung geändert</translation>
    </message>
    <message>
        <source>Replaced by this publish</source>
        <translation>Durch diese Veröffentlichung ersetzt</translation>
    </message>
    <message>
        <source>Deleted by this publish</source>
        <translation>Durch diese Veröffentlichung gelöscht</translation>
    </message>
    <message>
        <source>What</source>
        <translation>Was</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Why</source>
        <translation>Warum</translation>
    </message>
    <message>
        <source>Source size</source>
        <translation>Größe Quelle</translation>
    </message>
    <message>
        <source>Source date</source>
        <translation>Datum Quelle</translation>
    </message>
    <message>
        <source>Destination size</source>
        <translation>Größe Ziel</translation>
    </message>
    <message>
        <source>Destination date</source>
        <translation>Datum Ziel</translation>
    </message>
    <message>
        <source>Kept size</source>
        <translation>Größe alt</translation>
    </message>
    <message>
        <source>Kept date</source>
        <translation>Datum alt</translation>
    </message>
    <message>
        <source>Size now</source>
        <translation>Größe jetzt</translation>
    </message>
    <message>
        <source>Date now</source>
        <translation>Datum jetzt</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Neu</translation>
    </message>
    <message>
        <source>Newer</source>
        <translation>Neuer</translation>
    </message>
    <message>
        <source>Different</source>
        <translation>Anders</translation>
    </message>
    <message>
        <source>Conflict</source>
        <translation>Konflikt</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
</context>
<context>
    <name>luma::TableEdits</name>
    <message>
        <source>Add Row</source>
        <translation>Zeile einfügen</translation>
    </message>
    <message>
        <source>Add Column</source>
        <translation>Spalte einfügen</translation>
    </message>
    <message>
        <source>Remove Row</source>
        <translation>Zeile entfernen</translation>
    </message>
    <message>
        <source>Remove Column</source>
        <translation>Spalte entfernen</translation>
    </message>
    <message>
        <source>Merge Cells</source>
        <translation>Zellen verbinden</translation>
    </message>
    <message>
        <source>Split Cell</source>
        <translation>Zelle teilen</translation>
    </message>
    <message>
        <source>Header Row</source>
        <translation>Kopfzeile</translation>
    </message>
    <message>
        <source>Select the cells that are to become one first.</source>
        <translation>Wählen Sie zuerst die Zellen aus, die eine werden sollen.</translation>
    </message>
    <message>
        <source>Cells of the header and of the body can&apos;t be merged.</source>
        <translation>Zellen des Kopfes und des Rumpfes lassen sich nicht verbinden.</translation>
    </message>
    <message>
        <source>Only a merged cell can be split.</source>
        <translation>Nur eine verbundene Zelle lässt sich teilen.</translation>
    </message>
    <message>
        <source>A cell of the first row reaches into the next one. Split it first.</source>
        <translation>Eine Zelle der ersten Zeile reicht in die nächste. Teilen Sie sie zuerst.</translation>
    </message>
    <message>
        <source>Select a cell of a table first.</source>
        <translation>Wählen Sie zuerst eine Zelle einer Tabelle aus.</translation>
    </message>
</context>
<context>
    <name>luma::TableGrid</name>
    <message>
        <source>This table is too large to be changed here.</source>
        <translation>Diese Tabelle ist zu groß, um sie hier zu ändern.</translation>
    </message>
</context>
<context>
    <name>luma::TemplateSheet</name>
    <message>
        <source>&amp;Copy the files that it uses into the site</source>
        <translation>&amp;Dateien, die sie verwendet, in die Website kopieren</translation>
    </message>
</context>
<context>
    <name>luma::TextQuery</name>
    <message>
        <source>Not a regular expression: %1</source>
        <translation>Kein regulärer Ausdruck: %1</translation>
    </message>
    <message>
        <source>The expression takes too long: it tries too much at one place.</source>
        <translation>Der Ausdruck braucht zu lange: Er probiert an einer Stelle zu viel.</translation>
    </message>
    <message>
        <source>Not a regular expression, at character %1: %2</source>
        <translation>Kein regulärer Ausdruck, bei Zeichen %1: %2</translation>
    </message>
</context>
<context>
    <name>luma::TickList</name>
    <message>
        <source>%1 of %2 selected</source>
        <translation>%1 von %2 ausgewählt</translation>
    </message>
</context>
<context>
    <name>luma::Transformers</name>
    <message>
        <source>Disconnect</source>
        <translation>Trennen</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
</context>
<context>
    <name>luma::UndoCommand</name>
    <message>
        <source>&amp;Undo %1</source>
        <translation>&amp;Rückgängig: %1</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Bewegen</translation>
    </message>
</context>
<context>
    <name>luma::UnlinkedItemsPanel</name>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>%1 (kept)</source>
        <translation>%1 (behalten)</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>&amp;Keep This Item</source>
        <translation>Objekt &amp;behalten</translation>
    </message>
    <message>
        <source>Leaves the selected files out of this report from now on</source>
        <translation>Lässt die ausgewählten Dateien künftig aus diesem Bericht heraus</translation>
    </message>
    <message>
        <source>No Longer &amp;Keep This Item</source>
        <translation>Objekt nicht mehr &amp;behalten</translation>
    </message>
    <message>
        <source>Listing all files with no links.</source>
        <translation>Alle Dateien ohne Links werden aufgelistet.</translation>
    </message>
    <message>
        <source>Stopped before all files were checked. Restart begins again.</source>
        <translation>Angehalten, bevor alle Dateien geprüft waren. „Neu starten“ beginnt von vorn.</translation>
    </message>
    <message>
        <source>Are you sure you want to move this file (%1) to the trash?</source>
        <translation>Möchten Sie diese Datei (%1) wirklich in den Papierkorb bewegen?</translation>
    </message>
    <message>
        <source>Are you sure you want to move these %1 files (%2) to the trash?</source>
        <translation>Möchten Sie diese %1 Dateien (%2) wirklich in den Papierkorb bewegen?</translation>
    </message>
    <message>
        <source>No more files to be deleted.</source>
        <translation>Keine Dateien mehr zu löschen.</translation>
    </message>
    <message>
        <source>Show &amp;kept files (%1)</source>
        <translation>Be&amp;haltene Dateien zeigen (%1)</translation>
    </message>
    <message>
        <source>No files without links.</source>
        <translation>Keine Dateien ohne Links.</translation>
    </message>
    <message>
        <source>Looking through all files of the site</source>
        <translation>Alle Dateien der Website werden durchgesehen</translation>
    </message>
</context>
<context>
    <name>luma::VersionCheck</name>
    <message>
        <source>There are no newer versions available</source>
        <translation>Es gibt keine neueren Fassungen</translation>
    </message>
    <message>
        <source>You are running the latest version of LUMA for Ventura.</source>
        <translation>Sie verwenden die neueste Fassung von LUMA für Ventura.</translation>
    </message>
    <message>
        <source>An update for Postwick is available</source>
        <translation>Für Postwick gibt es eine Aktualisierung</translation>
    </message>
    <message>
        <source>
There is a newer version available (version %1).
Click OK to go to the LUMA for Ventura web site.
</source>
        <translation>
Es gibt eine neuere Fassung (Fassung %1).
OK führt zur Website von LUMA für Ventura.
</translation>
    </message>
</context>
<context>
    <name>luma::ViewController</name>
    <message>
        <source>Page</source>
        <translation>Seite</translation>
    </message>
    <message>
        <source>Remove Link</source>
        <translation>Link entfernen</translation>
    </message>
    <message>
        <source>Remove Format</source>
        <translation>Format entfernen</translation>
    </message>
    <message>
        <source>Remove Justification</source>
        <translation>Ausrichtung entfernen</translation>
    </message>
    <message>
        <source>Inspect Element</source>
        <translation>Element untersuchen</translation>
    </message>
    <message>
        <source>Insert Table</source>
        <translation>Tabelle einfügen</translation>
    </message>
    <message>
        <source>Insert Character</source>
        <translation>Zeichen einfügen</translation>
    </message>
</context>
<context>
    <name>luma::endpoint</name>
    <message>
        <source>Local folder</source>
        <translation>Lokaler Ordner</translation>
    </message>
    <message>
        <source>Windows share</source>
        <translation>Windows-Freigabe</translation>
    </message>
    <message>
        <source>SSH</source>
        <translation>SSH</translation>
    </message>
    <message>
        <source>WebDAV</source>
        <translation>WebDAV</translation>
    </message>
    <message>
        <source>WebDAV, encrypted</source>
        <translation>WebDAV, verschlüsselt</translation>
    </message>
    <message>
        <source>FTP</source>
        <translation>FTP</translation>
    </message>
    <message>
        <source>Apple share</source>
        <translation>Apple-Freigabe</translation>
    </message>
    <message>
        <source>NFS</source>
        <translation>NFS</translation>
    </message>
</context>
</TS>
