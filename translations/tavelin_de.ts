<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>QObject</name>
    <message>
        <source>%1 It takes: %2</source>
        <translation>%1 Erlaubt ist: %2</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is neither a name nor a number of the enumeration.</source>
        <translation>„%1“ ist weder ein Name noch eine Zahl der Aufzählung.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is no %2.</source>
        <translation>„%1“ ist kein %2.</translation>
    </message>
    <message>
        <source>A line takes %1 characters at most; the rest was left out.</source>
        <translation>Eine Zeile fasst höchstens %1 Zeichen; der Rest wurde weggelassen.</translation>
    </message>
    <message>
        <source>A structure is changed by its fields.</source>
        <translation>Eine Struktur wird über ihre Felder geändert.</translation>
    </message>
    <message>
        <source>A text of several lines would lose its line breaks.</source>
        <translation>Ein mehrzeiliger Text verlöre seine Zeilenumbrüche.</translation>
    </message>
    <message>
        <source>An array is changed by its elements.</source>
        <translation>Ein Array wird über seine Elemente geändert.</translation>
    </message>
    <message>
        <source>Bits</source>
        <translation>Bits</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Durchsuchen</translation>
    </message>
    <message>
        <source>Choose a node of the server</source>
        <translation>Einen Knoten des Servers wählen</translation>
    </message>
    <message>
        <source>It is empty, and its data type is not known here.</source>
        <translation>Er ist leer, und sein Datentyp ist hier nicht bekannt.</translation>
    </message>
    <message>
        <source>It is too long for a line.</source>
        <translation>Er ist zu lang für eine Zeile.</translation>
    </message>
    <message>
        <source>Reading the types of a value</source>
        <translation>Typen eines Werts lesen</translation>
    </message>
    <message>
        <source>There is no editor for values of type %1.</source>
        <translation>Für Werte vom Typ %1 gibt es keinen Editor.</translation>
    </message>
    <message>
        <source>Tick the bits of the option set</source>
        <translation>Die Bits des OptionSet ankreuzen</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
</context>
<context>
    <name>QlumAboutDialog</name>
    <message>
        <source>&amp;Copy Versions</source>
        <translation>Versionen &amp;kopieren</translation>
    </message>
    <message>
        <source>About Tavelin</source>
        <translation>Über Tavelin</translation>
    </message>
    <message>
        <source>Copies the versions of all parts, for whoever is asked for help</source>
        <translation>Kopiert die Versionen aller Teile, für den, der helfen soll</translation>
    </message>
    <message>
        <source>Korvanda Tavelin %1
The OPC Unified Architecture Client

Communication stack %2
Platform layer %3
Qt %4</source>
        <translation>Korvanda Tavelin %1
Der Client für OPC Unified Architecture

Kommunikationsstack %2
Plattformschicht %3
Qt %4</translation>
    </message>
    <message>
        <source>Open License Folder</source>
        <translation>Lizenzordner öffnen</translation>
    </message>
    <message>
        <source>The license folder %1 could not be opened.</source>
        <translation>Der Lizenzordner %1 konnte nicht geöffnet werden.</translation>
    </message>
</context>
<context>
    <name>QlumAccess</name>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>More commands</source>
        <translation>Weitere Befehle</translation>
    </message>
    <message>
        <source>Type of files</source>
        <translation>Art der Dateien</translation>
    </message>
</context>
<context>
    <name>QlumAddressSpaceModel</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not browsed: the connection to the server is lost.</source>
        <translation>„%1“ wird nicht durchsucht: Die Verbindung zum Server ist verloren.</translation>
    </message>
    <message>
        <source>AddressSpaceModel</source>
        <translation>AddressSpaceModel</translation>
    </message>
    <message>
        <source>Browse failed with error &apos;%1&apos;.</source>
        <translation>Browse ist mit dem Fehler „%1“ fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Browse succeeded.</source>
        <translation>Browse war erfolgreich.</translation>
    </message>
    <message>
        <source>BrowseNext succeeded.</source>
        <translation>BrowseNext war erfolgreich.</translation>
    </message>
    <message>
        <source>Browsing</source>
        <translation>Durchsuchen</translation>
    </message>
    <message>
        <source>Browsing was cancelled by user.</source>
        <translation>Das Durchsuchen wurde vom Benutzer abgebrochen.</translation>
    </message>
    <message>
        <source>Browsing was cancelled by user. Releasing current ContinuationPoint.</source>
        <translation>Das Durchsuchen wurde vom Benutzer abgebrochen. Der aktuelle ContinuationPoint wird freigegeben.</translation>
    </message>
    <message>
        <source>Item</source>
        <translation>Element</translation>
    </message>
    <message>
        <source>No Highlight</source>
        <translation>Keine Hervorhebung</translation>
    </message>
    <message>
        <source>Root</source>
        <translation>Root</translation>
    </message>
    <message>
        <source>Server returned more ContinuationPoints than accepted by setting &apos;General.MaxBrowseNextCalls&apos;. Releasing current ContinuationPoint.</source>
        <translation>Der Server hat mehr ContinuationPoints geliefert, als die Einstellung „General.MaxBrowseNextCalls“ zulässt. Der aktuelle ContinuationPoint wird freigegeben.</translation>
    </message>
    <message>
        <source>Showing a node in the address space</source>
        <translation>Einen Knoten im Adressraum zeigen</translation>
    </message>
    <message>
        <source>The references are incomplete. Releasing current ContinuationPoint.</source>
        <translation>Die Referenzen sind unvollständig. Der aktuelle ContinuationPoint wird freigegeben.</translation>
    </message>
    <message>
        <source>The server does not come to an end of its references. Releasing current ContinuationPoint.</source>
        <translation>Der Server kommt mit seinen Referenzen an kein Ende. Der aktuelle ContinuationPoint wird freigegeben.</translation>
    </message>
    <message>
        <source>The server keeps refusing to continue. Releasing current ContinuationPoint.</source>
        <translation>Der Server weigert sich immer wieder fortzufahren. Der aktuelle ContinuationPoint wird freigegeben.</translation>
    </message>
</context>
<context>
    <name>QlumAddressSpacePage</name>
    <message>
        <source>&amp;Find or Go to...</source>
        <translation>&amp;Suchen oder gehe zu...</translation>
    </message>
    <message>
        <source>&lt;b&gt;Address Space&lt;/b&gt;&lt;br&gt;This window shows the address space of the current selected server. You can switch between the servers in the project window.</source>
        <translation>&lt;b&gt;Adressraum&lt;/b&gt;&lt;br&gt;Dieses Fenster zeigt den Adressraum des gewählten Servers. Im Projektfenster wechseln Sie zwischen den Servern.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy Name&lt;/b&gt;&lt;br&gt;Copies the names of the selected nodes.</source>
        <translation>&lt;b&gt;Namen kopieren&lt;/b&gt;&lt;br&gt;Kopiert die Namen der gewählten Knoten.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy Node Id&lt;/b&gt;&lt;br&gt;Copies the node ids of the selected nodes.</source>
        <translation>&lt;b&gt;NodeId kopieren&lt;/b&gt;&lt;br&gt;Kopiert die NodeIds der gewählten Knoten.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy Path&lt;/b&gt;&lt;br&gt;Copies the names from the root to each of the selected nodes.</source>
        <translation>&lt;b&gt;Pfad kopieren&lt;/b&gt;&lt;br&gt;Kopiert die Namen von der Wurzel zu jedem der gewählten Knoten.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Find or Go to&lt;/b&gt;&lt;br&gt;Finds a name among the nodes that were opened, or goes to a node by its id or browse path.</source>
        <translation>&lt;b&gt;Suchen oder gehe zu&lt;/b&gt;&lt;br&gt;Sucht einen Namen unter den geöffneten Knoten oder geht über NodeId oder Pfad zu einem Knoten.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Highlight Namespace&lt;/b&gt;&lt;br&gt;Select an entry to highlight all nodes of the namespace in the Address Space.</source>
        <translation>&lt;b&gt;Namensraum hervorheben&lt;/b&gt;&lt;br&gt;Wählen Sie einen Eintrag, um alle Knoten des Namensraums im Adressraum hervorzuheben.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Sort as People Read&lt;/b&gt;&lt;br&gt;Sorts names by the alphabet, capitals beside small letters and digits as numbers, instead of by the codes of their letters.</source>
        <translation>&lt;b&gt;Sortieren, wie man liest&lt;/b&gt;&lt;br&gt;Sortiert Namen nach dem Alphabet, Groß- neben Kleinbuchstaben und Ziffern als Zahlen, statt nach den Codes der Zeichen.</translation>
    </message>
    <message>
        <source>Address Space</source>
        <translation>Adressraum</translation>
    </message>
    <message>
        <source>Copy &amp;Name</source>
        <translation>&amp;Namen kopieren</translation>
    </message>
    <message>
        <source>Copy &amp;Path</source>
        <translation>&amp;Pfad kopieren</translation>
    </message>
    <message>
        <source>Copy Node &amp;Id</source>
        <translation>Node&amp;Id kopieren</translation>
    </message>
    <message>
        <source>Highlight Namespace</source>
        <translation>Namensraum hervorheben</translation>
    </message>
    <message>
        <source>Rebrowse selected node</source>
        <translation>Gewählten Knoten neu durchsuchen</translation>
    </message>
    <message>
        <source>Server &apos;%1&apos;: connection lost since %2. What was browsed before can still be read; nothing more can be opened until the connection is back.</source>
        <translation>Server „%1“: Verbindung verloren seit %2. Was vorher durchsucht wurde, bleibt lesbar; weiter öffnen lässt sich erst wieder etwas, wenn die Verbindung zurück ist.</translation>
    </message>
    <message>
        <source>Sort as People &amp;Read</source>
        <translation>Sortieren, &amp;wie man liest</translation>
    </message>
</context>
<context>
    <name>QlumAddressSpacePages</name>
    <message>
        <source>Connect a server and select it in the project window to see its nodes.</source>
        <translation>Verbinden Sie einen Server und wählen Sie ihn im Projektfenster, um seine Knoten zu sehen.</translation>
    </message>
    <message>
        <source>No address space</source>
        <translation>Kein Adressraum</translation>
    </message>
</context>
<context>
    <name>QlumAdvancedPage</name>
    <message>
        <source>%1 (deprecated)</source>
        <translation>%1 (veraltet)</translation>
    </message>
    <message>
        <source>&amp;Application URI:</source>
        <translation>&amp;Anwendungs-URI:</translation>
    </message>
    <message>
        <source>&amp;Host and port:</source>
        <translation>&amp;Host und Port:</translation>
    </message>
    <message>
        <source>&lt;b&gt;Dial this host&lt;/b&gt;&lt;br&gt;Only host and port of the address are replaced. Security policy and users stay those of the endpoint, and the server&apos;s certificate is checked as it is.</source>
        <translation>&lt;b&gt;Diesen Host anwählen&lt;/b&gt;&lt;br&gt;Nur Host und Port der Adresse werden ersetzt. Sicherheitsrichtlinie und Benutzer bleiben die des Endpunkts, und das Serverzertifikat wird unverändert geprüft.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Server certificate&lt;/b&gt;&lt;br&gt;The certificate that the server is known to have. With it a server can be connected securely that does not list its endpoints, and one that shows another certificate is asked about.</source>
        <translation>&lt;b&gt;Serverzertifikat&lt;/b&gt;&lt;br&gt;Das Zertifikat, das der Server bekanntermaßen hat. Damit lässt sich auch ein Server sicher verbinden, der seine Endpunkte nicht auflistet; zeigt ein Server ein anderes Zertifikat, wird nachgefragt.</translation>
    </message>
    <message>
        <source>By which the server&apos;s certificate has to name it</source>
        <translation>Unter diesem Namen muss das Serverzertifikat ihn nennen</translation>
    </message>
    <message>
        <source>Dial this host &amp;instead of the one that the server names:</source>
        <translation>Diesen Host anwählen &amp;statt dessen, den der Server nennt:</translation>
    </message>
    <message>
        <source>Endpoint &amp;URL:</source>
        <translation>Endpunkt-&amp;URL:</translation>
    </message>
    <message>
        <source>Follows from how the URL begins</source>
        <translation>Ergibt sich aus dem Anfang der URL</translation>
    </message>
    <message>
        <source>For servers that do not list their endpoints</source>
        <translation>Für Server, die ihre Endpunkte nicht auflisten</translation>
    </message>
    <message>
        <source>For servers that do not show their certificate</source>
        <translation>Für Server, die ihr Zertifikat nicht zeigen</translation>
    </message>
    <message>
        <source>For servers whose own name is not known here; remembered in the project</source>
        <translation>Für Server, deren eigener Name hier unbekannt ist; wird im Projekt gemerkt</translation>
    </message>
    <message>
        <source>Host</source>
        <translation>Host</translation>
    </message>
    <message>
        <source>No endpoint is chosen.</source>
        <translation>Es ist kein Endpunkt gewählt.</translation>
    </message>
    <message>
        <source>Security &amp;mode:</source>
        <translation>Sicherheits&amp;modus:</translation>
    </message>
    <message>
        <source>Security &amp;policy:</source>
        <translation>Si&amp;cherheitsrichtlinie:</translation>
    </message>
    <message>
        <source>Server &amp;certificate:</source>
        <translation>Server&amp;zertifikat:</translation>
    </message>
    <message>
        <source>Set the endpoint &amp;by hand</source>
        <translation>Endpunkt von Hand &amp;vorgeben</translation>
    </message>
    <message>
        <source>The server&apos;s host is &apos;%1&apos;, which cannot be found from here. Dial the host under which it has answered.</source>
        <translation>Der Host des Servers ist „%1“, der von hier aus nicht zu finden ist. Wählen Sie den Host an, unter dem er geantwortet hat.</translation>
    </message>
    <message>
        <source>The server&apos;s host is &apos;%1&apos;, which is found at %2.</source>
        <translation>Der Host des Servers ist „%1“, zu finden unter %2.</translation>
    </message>
    <message>
        <source>The server&apos;s host is &apos;%1&apos;.</source>
        <translation>Der Host des Servers ist „%1“.</translation>
    </message>
    <message>
        <source>Transport:</source>
        <translation>Transport:</translation>
    </message>
</context>
<context>
    <name>QlumAlarmModel</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>%1/%2</source>
        <translation>%1/%2</translation>
    </message>
    <message>
        <source>Acknowledged State</source>
        <translation>Quittierzustand</translation>
    </message>
    <message>
        <source>Active</source>
        <translation>Aktiv</translation>
    </message>
    <message>
        <source>ConditionName</source>
        <translation>ConditionName</translation>
    </message>
    <message>
        <source>Confirmed State</source>
        <translation>Bestätigungszustand</translation>
    </message>
    <message>
        <source>False</source>
        <translation>Falsch</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <source>Server/Object</source>
        <translation>Server/Objekt</translation>
    </message>
    <message>
        <source>Severity</source>
        <translation>Schweregrad</translation>
    </message>
    <message>
        <source>SourceName</source>
        <translation>SourceName</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>True</source>
        <translation>Wahr</translation>
    </message>
    <message>
        <source>no connection</source>
        <translation>keine Verbindung</translation>
    </message>
    <message>
        <source>not refreshed</source>
        <translation>nicht aufgefrischt</translation>
    </message>
    <message>
        <source>not retained</source>
        <translation>nicht aufbewahrt</translation>
    </message>
</context>
<context>
    <name>QlumArgumentPanel</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>QlumArrayModel</name>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
</context>
<context>
    <name>QlumArrayPage</name>
    <message>
        <source>%1 elements of type %2</source>
        <translation>%1 Elemente vom Typ %2</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Fill</source>
        <translation>A&amp;uffüllen</translation>
    </message>
    <message>
        <source>&amp;Go to:</source>
        <translation>&amp;Gehe zu:</translation>
    </message>
    <message>
        <source>&amp;Insert</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>&amp;Length:</source>
        <translation>&amp;Länge:</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>Ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>&amp;Sort</source>
        <translation>&amp;Sortieren</translation>
    </message>
    <message>
        <source>1 element of type %1</source>
        <translation>1 Element vom Typ %1</translation>
    </message>
    <message>
        <source>&lt;b&gt;Add at End&lt;/b&gt;&lt;br&gt;Adds an element behind the last one.</source>
        <translation>&lt;b&gt;Am Ende hinzufügen&lt;/b&gt;&lt;br&gt;Fügt hinter dem letzten ein Element hinzu.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy&lt;/b&gt;&lt;br&gt;Puts the selected elements on the clipboard, one in a line, as spreadsheets take them.</source>
        <translation>&lt;b&gt;Kopieren&lt;/b&gt;&lt;br&gt;Legt die gewählten Elemente in die Zwischenablage, eines je Zeile, wie Tabellenprogramme sie nehmen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Fill&lt;/b&gt;&lt;br&gt;Gives all selected elements the value of the first of them.</source>
        <translation>&lt;b&gt;Auffüllen&lt;/b&gt;&lt;br&gt;Gibt allen gewählten Elementen den Wert des ersten.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Insert&lt;/b&gt;&lt;br&gt;Inserts as many elements as are selected, before the first of them.</source>
        <translation>&lt;b&gt;Einfügen&lt;/b&gt;&lt;br&gt;Fügt vor dem ersten gewählten so viele Elemente ein, wie gewählt sind.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Move Down&lt;/b&gt;&lt;br&gt;The selected elements change places with the one behind them.</source>
        <translation>&lt;b&gt;Nach unten&lt;/b&gt;&lt;br&gt;Die gewählten Elemente tauschen den Platz mit dem dahinter.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Move Up&lt;/b&gt;&lt;br&gt;The selected elements change places with the one before them.</source>
        <translation>&lt;b&gt;Nach oben&lt;/b&gt;&lt;br&gt;Die gewählten Elemente tauschen den Platz mit dem davor.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Open&lt;/b&gt;&lt;br&gt;Shows the element with all its fields in a window of its own.</source>
        <translation>&lt;b&gt;Öffnen&lt;/b&gt;&lt;br&gt;Zeigt das Element mit allen Feldern in einem eigenen Fenster.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Paste&lt;/b&gt;&lt;br&gt;Takes the column that was copied in a spreadsheet, from the first selected element on; what goes beyond the end becomes new elements.</source>
        <translation>&lt;b&gt;Einfügen&lt;/b&gt;&lt;br&gt;Nimmt die in einem Tabellenprogramm kopierte Spalte, ab dem ersten gewählten Element; was über das Ende reicht, wird zu neuen Elementen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Remove&lt;/b&gt;&lt;br&gt;Removes the selected elements.</source>
        <translation>&lt;b&gt;Entfernen&lt;/b&gt;&lt;br&gt;Entfernt die gewählten Elemente.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Sort Down&lt;/b&gt;&lt;br&gt;As Sort, the largest first.</source>
        <translation>&lt;b&gt;Absteigend sortieren&lt;/b&gt;&lt;br&gt;Wie Sortieren, das größte zuerst.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Sort&lt;/b&gt;&lt;br&gt;Puts the selected elements in order, the smallest first; all elements when not more than one is selected.</source>
        <translation>&lt;b&gt;Sortieren&lt;/b&gt;&lt;br&gt;Ordnet die gewählten Elemente, das kleinste zuerst; alle, wenn nicht mehr als eines gewählt ist.</translation>
    </message>
    <message>
        <source>Add an element behind the last one</source>
        <translation>Hinter dem letzten ein Element hinzufügen</translation>
    </message>
    <message>
        <source>Add at &amp;End</source>
        <translation>Am En&amp;de hinzufügen</translation>
    </message>
    <message>
        <source>Array</source>
        <translation>Array</translation>
    </message>
    <message>
        <source>Copy the selected elements</source>
        <translation>Die gewählten Elemente kopieren</translation>
    </message>
    <message>
        <source>Edit the element in a window of its own</source>
        <translation>Das Element in einem eigenen Fenster bearbeiten</translation>
    </message>
    <message>
        <source>Give all selected elements the value of the first of them</source>
        <translation>Allen gewählten Elementen den Wert des ersten geben</translation>
    </message>
    <message>
        <source>Insert elements before the selected ones, as many as are selected</source>
        <translation>Vor den gewählten so viele Elemente einfügen, wie gewählt sind</translation>
    </message>
    <message>
        <source>Move &amp;Down</source>
        <translation>Nach &amp;unten</translation>
    </message>
    <message>
        <source>Move &amp;Up</source>
        <translation>Nach &amp;oben</translation>
    </message>
    <message>
        <source>Move the selected elements down</source>
        <translation>Die gewählten Elemente nach unten schieben</translation>
    </message>
    <message>
        <source>Move the selected elements up</source>
        <translation>Die gewählten Elemente nach oben schieben</translation>
    </message>
    <message>
        <source>Number of elements; new ones come at the end, and go from there</source>
        <translation>Anzahl der Elemente; neue kommen am Ende hinzu und fallen dort auch weg</translation>
    </message>
    <message>
        <source>Only the first column goes into an array.</source>
        <translation>Nur die erste Spalte kommt in ein Array.</translation>
    </message>
    <message>
        <source>Paste a column, from the first selected element on</source>
        <translation>Eine Spalte einfügen, ab dem ersten gewählten Element</translation>
    </message>
    <message>
        <source>Remove the selected elements</source>
        <translation>Die gewählten Elemente entfernen</translation>
    </message>
    <message>
        <source>Shows the element with this index</source>
        <translation>Zeigt das Element mit diesem Index</translation>
    </message>
    <message>
        <source>Sort Do&amp;wn</source>
        <translation>Absteigend sor&amp;tieren</translation>
    </message>
    <message>
        <source>Sort the largest first</source>
        <translation>Das größte zuerst sortieren</translation>
    </message>
    <message>
        <source>Sort the selected elements, or all when none or one is selected</source>
        <translation>Die gewählten Elemente sortieren, oder alle, wenn keines oder eines gewählt ist</translation>
    </message>
    <message>
        <source>The array has no elements. Insert adds one; a column of a spreadsheet can be pasted.</source>
        <translation>Das Array hat keine Elemente. „Einfügen“ fügt eines hinzu; eine Spalte einer Tabelle lässt sich einfügen.</translation>
    </message>
</context>
<context>
    <name>QlumAttributeDelegate</name>
    <message>
        <source>%1 (not written: %2)</source>
        <translation>%1 (nicht geschrieben: %2)</translation>
    </message>
    <message>
        <source>The server cannot be asked at the moment.</source>
        <translation>Der Server kann im Moment nicht gefragt werden.</translation>
    </message>
</context>
<context>
    <name>QlumAttributeDetails</name>
    <message>
        <source>%1 Array[%2]</source>
        <translation>%1-Array[%2]</translation>
    </message>
    <message>
        <source>%1 Matrix %2</source>
        <translation>%1-Matrix %2</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>Instrument Range</source>
        <translation>Messbereich</translation>
    </message>
    <message>
        <source>Meaning</source>
        <translation>Bedeutung</translation>
    </message>
    <message>
        <source>Range</source>
        <translation>Bereich</translation>
    </message>
    <message>
        <source>Texts</source>
        <translation>Texte</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
</context>
<context>
    <name>QlumAttributeModel</name>
    <message>
        <source> The attribute holds %1.</source>
        <translation> Das Attribut hat den Typ %1.</translation>
    </message>
    <message>
        <source> The node declares %1.</source>
        <translation> Der Knoten gibt %1 an.</translation>
    </message>
    <message>
        <source>%1 is not for clients to write.</source>
        <translation>%1 wird nicht von Clients geschrieben.</translation>
    </message>
    <message>
        <source>%1 was written, and the server has taken it, but %2 was read back.</source>
        <translation>%1 wurde geschrieben und vom Server angenommen, aber zurückgelesen wurde %2.</translation>
    </message>
    <message>
        <source>(absent)</source>
        <translation>(nicht vorhanden)</translation>
    </message>
    <message>
        <source>(empty)</source>
        <translation>(leer)</translation>
    </message>
    <message>
        <source>(null)</source>
        <translation>(null)</translation>
    </message>
    <message>
        <source>. Sent was %1 (%2).</source>
        <translation>. Gesendet wurde %1 (%2).</translation>
    </message>
    <message>
        <source>Another node is being read.</source>
        <translation>Es wird gerade ein anderer Knoten gelesen.</translation>
    </message>
    <message>
        <source>Another node is shown by now, or its server was removed. Select %1 again to write it.</source>
        <translation>Inzwischen wird ein anderer Knoten gezeigt, oder sein Server wurde entfernt. Wählen Sie %1 erneut, um es zu schreiben.</translation>
    </message>
    <message>
        <source>Attribute</source>
        <translation>Attribut</translation>
    </message>
    <message>
        <source>Attribute Plugin</source>
        <translation>Plugin Attribute</translation>
    </message>
    <message>
        <source>Could not convert value to variant type %1</source>
        <translation>Der Wert ließ sich nicht in den Variant-Typ %1 umwandeln</translation>
    </message>
    <message>
        <source>Invalid Datatype: Expected OpcUaType_%1, Received %2</source>
        <translation>Ungültiger Datentyp: erwartet OpcUaType_%1, erhalten %2</translation>
    </message>
    <message>
        <source>Nobody may write it: WriteMask has no %1.</source>
        <translation>Niemand darf es schreiben: WriteMask hat kein %1.</translation>
    </message>
    <message>
        <source>Root</source>
        <translation>Root</translation>
    </message>
    <message>
        <source>The node does not say that anything but its Value may be written.</source>
        <translation>Der Knoten sagt nicht, dass außer seinem Wert etwas geschrieben werden darf.</translation>
    </message>
    <message>
        <source>The server cannot be asked at the moment.</source>
        <translation>Der Server kann im Moment nicht gefragt werden.</translation>
    </message>
    <message>
        <source>The server does not take single elements. The whole array was written, with its other elements as they were on the server.</source>
        <translation>Der Server nimmt keine einzelnen Elemente an. Das ganze Array wurde geschrieben, die übrigen Elemente so, wie sie auf dem Server standen.</translation>
    </message>
    <message>
        <source>The user who is logged in may not write it: UserWriteMask has no %1.</source>
        <translation>Der angemeldete Benutzer darf es nicht schreiben: UserWriteMask hat kein %1.</translation>
    </message>
    <message>
        <source>The window has been closed.</source>
        <translation>Das Fenster wurde geschlossen.</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>What is shown is not up to date: its server could not be asked.</source>
        <translation>Das Gezeigte ist nicht aktuell: Sein Server konnte nicht gefragt werden.</translation>
    </message>
    <message>
        <source>Write %1 of %2</source>
        <translation>%1 von %2 schreiben</translation>
    </message>
    <message>
        <source>Write failed [ret = %1].</source>
        <translation>Schreiben fehlgeschlagen [ret = %1].</translation>
    </message>
    <message>
        <source>Write to node &apos;%1&apos; failed [ret = %2].</source>
        <translation>Schreiben auf Knoten „%1“ fehlgeschlagen [ret = %2].</translation>
    </message>
    <message>
        <source>Write to node &apos;%1&apos; succeeded [ret = %2].</source>
        <translation>Schreiben auf Knoten „%1“ erfolgreich [ret = %2].</translation>
    </message>
    <message>
        <source>Write to node &apos;%1&apos; was held back: it has changed on the server since it was shown.</source>
        <translation>Schreiben auf Knoten „%1“ zurückgehalten: Er hat sich auf dem Server geändert, seit er angezeigt wurde.</translation>
    </message>
    <message>
        <source>it has changed on the server since it was shown, and is read again; look at it, then write again</source>
        <translation>es hat sich seit der Anzeige auf dem Server geändert und wird neu gelesen; sehen Sie es an und schreiben Sie dann erneut</translation>
    </message>
</context>
<context>
    <name>QlumAttributePlugin</name>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1: %2, %3</source>
        <translation>%1: %2, %3</translation>
    </message>
    <message>
        <source>&amp;Back</source>
        <translation>&amp;Zurück</translation>
    </message>
    <message>
        <source>&amp;Edit in Window...</source>
        <translation>Im &amp;Fenster bearbeiten...</translation>
    </message>
    <message>
        <source>&amp;Edit values that may not be written</source>
        <translation>&amp;Werte bearbeiten, die nicht geschrieben werden dürfen</translation>
    </message>
    <message>
        <source>&amp;Forward</source>
        <translation>&amp;Vorwärts</translation>
    </message>
    <message>
        <source>&amp;Keep for Comparison</source>
        <translation>Für &amp;Vergleich behalten</translation>
    </message>
    <message>
        <source>&amp;Oldest value shown:</source>
        <translation>Ä&amp;ltester gezeigter Wert:</translation>
    </message>
    <message>
        <source>&amp;Undo Write</source>
        <translation>Schreiben &amp;rückgängig</translation>
    </message>
    <message>
        <source>&amp;Watch Value</source>
        <translation>Wert über&amp;wachen</translation>
    </message>
    <message>
        <source>&lt;b&gt;Attributes&lt;/b&gt;&lt;br&gt;This window shows the attributes of the selected node. You can change the selection in the address space window.</source>
        <translation>&lt;b&gt;Attribute&lt;/b&gt;&lt;br&gt;Dieses Fenster zeigt die Attribute des gewählten Knotens. Die Auswahl ändern Sie im Adressraumfenster.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Back&lt;/b&gt;&lt;br&gt;Shows the node that was shown before.</source>
        <translation>&lt;b&gt;Zurück&lt;/b&gt;&lt;br&gt;Zeigt den vorher gezeigten Knoten.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy Browse Path&lt;/b&gt;&lt;br&gt;Copies the browse names from the root to the node.</source>
        <translation>&lt;b&gt;Pfad kopieren&lt;/b&gt;&lt;br&gt;Kopiert die BrowseNames von der Wurzel zum Knoten.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy Node Id with Namespace URI&lt;/b&gt;&lt;br&gt;Copies the id of the node in the form that stays the same when the server numbers its namespaces in another way.</source>
        <translation>&lt;b&gt;NodeId mit Namensraum-URI kopieren&lt;/b&gt;&lt;br&gt;Kopiert die Id des Knotens in der Form, die gleich bleibt, wenn der Server seine Namensräume anders nummeriert.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Edit in Window&lt;/b&gt;&lt;br&gt;Edits the value of the row where there is room for it: arrays, structures, long texts.</source>
        <translation>&lt;b&gt;Im Fenster bearbeiten&lt;/b&gt;&lt;br&gt;Bearbeitet den Wert der Zeile, wo Platz dafür ist: Arrays, Strukturen, lange Texte.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Forward&lt;/b&gt;&lt;br&gt;Shows the node again from which Back has led.</source>
        <translation>&lt;b&gt;Vorwärts&lt;/b&gt;&lt;br&gt;Zeigt wieder den Knoten, von dem „Zurück“ weggeführt hat.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Undo Write&lt;/b&gt;&lt;br&gt;Writes the value that was there before the last write, as long as the same node is shown.</source>
        <translation>&lt;b&gt;Schreiben rückgängig&lt;/b&gt;&lt;br&gt;Schreibt den Wert, der vor dem letzten Schreiben da war, solange derselbe Knoten gezeigt wird.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Watch Value&lt;/b&gt;&lt;br&gt;Shows the Value of the node as it changes on the server, by a subscription. Off: it is the one that was last read.</source>
        <translation>&lt;b&gt;Wert überwachen&lt;/b&gt;&lt;br&gt;Zeigt den Value des Knotens, wie er sich auf dem Server ändert, über eine Subscription. Aus: Es ist der zuletzt gelesene.</translation>
    </message>
    <message>
        <source>A server may answer with a value that it read so long ago. With 0 it reads the value anew, which may take longer.</source>
        <translation>Ein Server darf mit einem Wert antworten, den er vor so langer Zeit gelesen hat. Bei 0 liest er den Wert neu, was länger dauern kann.</translation>
    </message>
    <message>
        <source>About the value of %1:</source>
        <translation>Zum Wert von %1:</translation>
    </message>
    <message>
        <source>Attri&amp;butes</source>
        <translation>Attri&amp;bute</translation>
    </message>
    <message>
        <source>Attributes</source>
        <translation>Attribute</translation>
    </message>
    <message>
        <source>Co&amp;mpare with Kept Node</source>
        <translation>Mit behaltenem Knoten ver&amp;gleichen</translation>
    </message>
    <message>
        <source>Collapse All</source>
        <translation>Alle einklappen</translation>
    </message>
    <message>
        <source>Copy B&amp;rowse Path</source>
        <translation>&amp;Pfad kopieren</translation>
    </message>
    <message>
        <source>Copy Node Id with Namespace &amp;URI</source>
        <translation>NodeId mit Namensraum-&amp;URI kopieren</translation>
    </message>
    <message>
        <source>Edit the value of the row in a window of its own</source>
        <translation>Den Wert der Zeile in einem eigenen Fenster bearbeiten</translation>
    </message>
    <message>
        <source>Expand All</source>
        <translation>Alle ausklappen</translation>
    </message>
    <message>
        <source>Keep what is shown of this node, to be compared with another one</source>
        <translation>Das von diesem Knoten Gezeigte behalten, um es mit einem anderen zu vergleichen</translation>
    </message>
    <message>
        <source>On/Off</source>
        <translation>Ein/Aus</translation>
    </message>
    <message>
        <source>Read the attributes again</source>
        <translation>Die Attribute erneut lesen</translation>
    </message>
    <message>
        <source>Read the attributes of every node that is selected</source>
        <translation>Die Attribute jedes gewählten Knotens lesen</translation>
    </message>
    <message>
        <source>Reading a browse path</source>
        <translation>Pfad lesen</translation>
    </message>
    <message>
        <source>Reading attributes</source>
        <translation>Attribute lesen</translation>
    </message>
    <message>
        <source>Reading is off. Press On/Off to read the attributes of %1.</source>
        <translation>Das Lesen ist aus. Drücken Sie Ein/Aus, um die Attribute von %1 zu lesen.</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Auffrischen</translation>
    </message>
    <message>
        <source>Select a node in the address space window.</source>
        <translation>Wählen Sie einen Knoten im Adressraumfenster.</translation>
    </message>
    <message>
        <source>Set Custom NodeId</source>
        <translation>Eigene NodeId angeben</translation>
    </message>
    <message>
        <source>Show all rows</source>
        <translation>Alle Zeilen zeigen</translation>
    </message>
    <message>
        <source>Show the Value as it changes</source>
        <translation>Den Value zeigen, wie er sich ändert</translation>
    </message>
    <message>
        <source>Show the attributes of any node by its id</source>
        <translation>Die Attribute eines beliebigen Knotens über seine Id zeigen</translation>
    </message>
    <message>
        <source>Show the attributes only</source>
        <translation>Nur die Attribute zeigen</translation>
    </message>
    <message>
        <source>Show the next node again</source>
        <translation>Wieder den nächsten Knoten zeigen</translation>
    </message>
    <message>
        <source>Show the node that was shown before</source>
        <translation>Den vorher gezeigten Knoten zeigen</translation>
    </message>
    <message>
        <source>Show this node and the one that was kept side by side</source>
        <translation>Diesen und den behaltenen Knoten nebeneinander zeigen</translation>
    </message>
    <message>
        <source>The attributes of %1 are being read...</source>
        <translation>Die Attribute von %1 werden gelesen...</translation>
    </message>
    <message>
        <source>The attributes of %1 are read when its server is connected.</source>
        <translation>Die Attribute von %1 werden gelesen, sobald sein Server verbunden ist.</translation>
    </message>
    <message>
        <source>The attributes of %1 could not be read.</source>
        <translation>Die Attribute von %1 konnten nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The browse path could not be read.</source>
        <translation>Der Pfad konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The node %1 is not on the server any more: its namespace has gone.</source>
        <translation>Der Knoten %1 ist nicht mehr auf dem Server: Sein Namensraum ist verschwunden.</translation>
    </message>
    <message>
        <source>The reading failed; the log says more.</source>
        <translation>Das Lesen ist fehlgeschlagen; mehr steht im Protokoll.</translation>
    </message>
    <message>
        <source>The reading was cancelled.</source>
        <translation>Das Lesen wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The value cannot be watched.</source>
        <translation>Der Wert kann nicht überwacht werden.</translation>
    </message>
    <message>
        <source>The value of %1 cannot be changed here.</source>
        <translation>Der Wert von %1 kann hier nicht geändert werden.</translation>
    </message>
    <message>
        <source>The value of %1 was not written.</source>
        <translation>Der Wert von %1 wurde nicht geschrieben.</translation>
    </message>
    <message>
        <source>Try &amp;Again</source>
        <translation>&amp;Erneut versuchen</translation>
    </message>
    <message>
        <source>Values that a node says may not be written can be edited all the same. The server then decides, and its answer is shown.</source>
        <translation>Werte, die laut Knoten nicht geschrieben werden dürfen, lassen sich trotzdem bearbeiten. Dann entscheidet der Server, und seine Antwort wird gezeigt.</translation>
    </message>
    <message>
        <source>What was entered for %1 was not written.</source>
        <translation>Die Eingabe für %1 wurde nicht geschrieben.</translation>
    </message>
    <message>
        <source>Write what was there before the last write</source>
        <translation>Schreiben, was vor dem letzten Schreiben da war</translation>
    </message>
    <message>
        <source>reading is off</source>
        <translation>Lesen ist aus</translation>
    </message>
    <message>
        <source>reading...</source>
        <translation>wird gelesen...</translation>
    </message>
</context>
<context>
    <name>QlumAttributeRows</name>
    <message>
        <source>%1 Array[%2]</source>
        <translation>%1-Array[%2]</translation>
    </message>
    <message>
        <source>%1 Matrix</source>
        <translation>%1-Matrix</translation>
    </message>
    <message>
        <source>ExtensionObject</source>
        <translation>ExtensionObject</translation>
    </message>
    <message>
        <source>Null</source>
        <translation>Null</translation>
    </message>
    <message>
        <source>Switch Field</source>
        <translation>Switch-Feld</translation>
    </message>
    <message>
        <source>not yet implemented</source>
        <translation>noch nicht umgesetzt</translation>
    </message>
</context>
<context>
    <name>QlumAttributeView</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Attributes</source>
        <translation>Attribute</translation>
    </message>
    <message>
        <source>Copy &amp;All as Text</source>
        <translation>&amp;Alles als Text kopieren</translation>
    </message>
    <message>
        <source>Copy &amp;Node Id</source>
        <translation>&amp;NodeId kopieren</translation>
    </message>
    <message>
        <source>Copy &amp;Path</source>
        <translation>&amp;Pfad kopieren</translation>
    </message>
    <message>
        <source>Copy &amp;Row</source>
        <translation>&amp;Zeile kopieren</translation>
    </message>
    <message>
        <source>Copy &amp;Value</source>
        <translation>&amp;Wert kopieren</translation>
    </message>
    <message>
        <source>Copy All as &amp;CSV</source>
        <translation>Alles als &amp;CSV kopieren</translation>
    </message>
    <message>
        <source>Copy All as J&amp;SON</source>
        <translation>Alles als J&amp;SON kopieren</translation>
    </message>
    <message>
        <source>Copy Value as &amp;JSON</source>
        <translation>Wert als &amp;JSON kopieren</translation>
    </message>
    <message>
        <source>Copy all attributes in a form that can be read back</source>
        <translation>Alle Attribute in einer Form kopieren, die wieder gelesen werden kann</translation>
    </message>
    <message>
        <source>Copy all rows as comma separated values</source>
        <translation>Alle Zeilen als kommagetrennte Werte kopieren</translation>
    </message>
    <message>
        <source>Copy all rows, indented</source>
        <translation>Alle Zeilen eingerückt kopieren</translation>
    </message>
    <message>
        <source>Copy the id of the node that is shown</source>
        <translation>Die NodeId des gezeigten Knotens kopieren</translation>
    </message>
    <message>
        <source>Copy the name and the value of the selected row</source>
        <translation>Namen und Wert der gewählten Zeile kopieren</translation>
    </message>
    <message>
        <source>Copy the names that lead to the row</source>
        <translation>Die Namen kopieren, die zur Zeile führen</translation>
    </message>
    <message>
        <source>Copy the text of the cell</source>
        <translation>Den Text der Zelle kopieren</translation>
    </message>
    <message>
        <source>Copy the value of the row in a form that can be read back</source>
        <translation>Den Wert der Zeile in einer Form kopieren, die wieder gelesen werden kann</translation>
    </message>
    <message>
        <source>Copy the whole value of the row</source>
        <translation>Den ganzen Wert der Zeile kopieren</translation>
    </message>
    <message>
        <source>It is a part of the row above, and changes with it.</source>
        <translation>Es ist ein Teil der Zeile darüber und ändert sich mit ihr.</translation>
    </message>
    <message>
        <source>Select a node in the address space window.</source>
        <translation>Wählen Sie einen Knoten im Adressraumfenster.</translation>
    </message>
    <message>
        <source>attributes</source>
        <translation>Attribute</translation>
    </message>
</context>
<context>
    <name>QlumBarPlot</name>
    <message>
        <source>Bar chart</source>
        <translation>Balkendiagramm</translation>
    </message>
    <message>
        <source>Bars</source>
        <translation>Balken</translation>
    </message>
    <message>
        <source>Bars appear here as soon as something was measured.</source>
        <translation>Balken erscheinen hier, sobald etwas gemessen wurde.</translation>
    </message>
    <message>
        <source>Figures as text</source>
        <translation>Zahlen als Text</translation>
    </message>
    <message>
        <source>No figures yet</source>
        <translation>Noch keine Zahlen</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Nummer</translation>
    </message>
</context>
<context>
    <name>QlumBrowseCaller</name>
    <message>
        <source>Browsing</source>
        <translation>Durchsuchen</translation>
    </message>
    <message>
        <source>Browsing &apos;%1&apos;: waiting for the server to answer.</source>
        <translation>„%1“ wird durchsucht: Warten auf die Antwort des Servers.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>QlumBrowseProgress</name>
    <message>
        <source>Browsing</source>
        <translation>Durchsuchen</translation>
    </message>
    <message>
        <source>Browsing &apos;%1&apos;: %2 nodes so far.</source>
        <translation>„%1“ wird durchsucht: bisher %2 Knoten.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>QlumBugReport</name>
    <message>
        <source>Preparing E-Mail failed</source>
        <translation>E-Mail konnte nicht vorbereitet werden</translation>
    </message>
    <message>
        <source>There seems no E-Mail client to be installed on your computer.
To report a bug, please send an E-Mail with a description to </source>
        <translation>Auf diesem Rechner scheint kein E-Mail-Programm installiert zu sein.
Um einen Fehler zu melden, senden Sie bitte eine E-Mail mit einer Beschreibung an </translation>
    </message>
</context>
<context>
    <name>QlumBytesPage</name>
    <message>
        <source>%1 bytes</source>
        <translation>%1 Bytes</translation>
    </message>
    <message>
        <source>%1 was not loaded: %2</source>
        <translation>%1 wurde nicht geladen: %2</translation>
    </message>
    <message>
        <source>%1 was not saved: %2</source>
        <translation>%1 wurde nicht gespeichert: %2</translation>
    </message>
    <message>
        <source>&amp;Load...</source>
        <translation>&amp;Laden...</translation>
    </message>
    <message>
        <source>&amp;No value (null)</source>
        <translation>&amp;Kein Wert (null)</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>&amp;Speichern...</translation>
    </message>
    <message>
        <source>A null value is not the same as an empty one</source>
        <translation>Ein Nullwert ist nicht dasselbe wie ein leerer Wert</translation>
    </message>
    <message>
        <source>Base64</source>
        <translation>Base64</translation>
    </message>
    <message>
        <source>Hexadecimal</source>
        <translation>Hexadezimal</translation>
    </message>
    <message>
        <source>Load Value</source>
        <translation>Wert laden</translation>
    </message>
    <message>
        <source>Save Value</source>
        <translation>Wert speichern</translation>
    </message>
    <message>
        <source>Show as &amp;Image</source>
        <translation>Als &amp;Bild zeigen</translation>
    </message>
    <message>
        <source>Shown as</source>
        <translation>Gezeigt als</translation>
    </message>
    <message>
        <source>Shows the image that these bytes are, in a document</source>
        <translation>Zeigt das Bild, das diese Bytes sind, in einem Dokument</translation>
    </message>
    <message>
        <source>Takes the content of a file</source>
        <translation>Übernimmt den Inhalt einer Datei</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Writes the value to a file</source>
        <translation>Schreibt den Wert in eine Datei</translation>
    </message>
    <message>
        <source>it is larger than any message</source>
        <translation>sie ist größer als jede Nachricht</translation>
    </message>
</context>
<context>
    <name>QlumCRLModel</name>
    <message>
        <source>(none)</source>
        <translation>(keine)</translation>
    </message>
    <message>
        <source>Country</source>
        <translation>Land</translation>
    </message>
    <message>
        <source>Filename</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>Locality</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Next Update</source>
        <translation>Nächste Aktualisierung</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Nummer</translation>
    </message>
    <message>
        <source>Organization</source>
        <translation>Organisation</translation>
    </message>
    <message>
        <source>OrganizationUnit</source>
        <translation>Organisationseinheit</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Bundesland</translation>
    </message>
    <message>
        <source>The CRL has expired</source>
        <translation>Die Sperrliste ist abgelaufen</translation>
    </message>
    <message>
        <source>The CRL is not yet valid</source>
        <translation>Die Sperrliste ist noch nicht gültig</translation>
    </message>
    <message>
        <source>The CRL will expire soon</source>
        <translation>Die Sperrliste läuft bald ab</translation>
    </message>
    <message>
        <source>Valid From</source>
        <translation>Gültig ab</translation>
    </message>
</context>
<context>
    <name>QlumCellText</name>
    <message>
        <source>%1 (%2 bytes)</source>
        <translation>%1 (%2 Bytes)</translation>
    </message>
    <message>
        <source>%1 bytes of type %2</source>
        <translation>%1 Bytes vom Typ %2</translation>
    </message>
    <message>
        <source>Null</source>
        <translation>Null</translation>
    </message>
</context>
<context>
    <name>QlumCertificateAdvice</name>
    <message>
        <source>An error occurred verifying security</source>
        <translation>Beim Prüfen der Sicherheit ist ein Fehler aufgetreten</translation>
    </message>
    <message>
        <source>Check the clocks of this computer and of the server. When both are right, the server needs a new certificate.</source>
        <translation>Prüfen Sie die Uhren dieses Rechners und des Servers. Gehen beide richtig, braucht der Server ein neues Zertifikat.</translation>
    </message>
    <message>
        <source>Everything is as expected</source>
        <translation>Alles ist wie erwartet</translation>
    </message>
    <message>
        <source>No description available</source>
        <translation>Keine Beschreibung verfügbar</translation>
    </message>
    <message>
        <source>Tavelin does not know this certificate. Compare its thumbprint with the one that the server&apos;s operator names; when they are equal, trust it.</source>
        <translation>Tavelin kennt dieses Zertifikat nicht. Vergleichen Sie seinen Fingerabdruck mit dem, den der Betreiber des Servers nennt; sind sie gleich, vertrauen Sie ihm.</translation>
    </message>
    <message>
        <source>Tavelin has no current revocation list of the issuer. Ask for the list and add it to the certificate store, or switch this check off in the settings.</source>
        <translation>Tavelin hat keine aktuelle Sperrliste des Ausstellers. Fordern Sie die Liste an und fügen Sie sie dem Zertifikatsspeicher hinzu, oder schalten Sie diese Prüfung in den Einstellungen ab.</translation>
    </message>
    <message>
        <source>The Certificate has been revoked</source>
        <translation>Das Zertifikat wurde gesperrt</translation>
    </message>
    <message>
        <source>The Certificate has expired or is not yet valid</source>
        <translation>Das Zertifikat ist abgelaufen oder noch nicht gültig</translation>
    </message>
    <message>
        <source>The Certificate is not trusted</source>
        <translation>Dem Zertifikat wird nicht vertraut</translation>
    </message>
    <message>
        <source>The certificate is damaged or its signature is wrong. Do not use it before the server&apos;s operator has explained it.</source>
        <translation>Das Zertifikat ist beschädigt oder seine Signatur ist falsch. Verwenden Sie es nicht, bevor der Betreiber des Servers das erklärt hat.</translation>
    </message>
    <message>
        <source>The certificate of an issuer is missing. Ask the server&apos;s operator for it and add it to the issuers in the certificate store.</source>
        <translation>Das Zertifikat eines Ausstellers fehlt. Fordern Sie es beim Betreiber des Servers an und fügen Sie es den Ausstellern im Zertifikatsspeicher hinzu.</translation>
    </message>
    <message>
        <source>The certificate provided as a parameter is not valid</source>
        <translation>Das als Parameter übergebene Zertifikat ist ungültig</translation>
    </message>
    <message>
        <source>The certificate was made for other host names than the one of the server&apos;s URL: it may belong to another server. Compare its thumbprint with the one that the server&apos;s operator names, or connect by a name that the certificate holds.</source>
        <translation>Das Zertifikat wurde für andere Hostnamen ausgestellt als den der Server-URL: Es gehört vielleicht zu einem anderen Server. Vergleichen Sie seinen Fingerabdruck mit dem, den der Betreiber des Servers nennt, oder verbinden Sie über einen Namen, den das Zertifikat enthält.</translation>
    </message>
    <message>
        <source>The certificate was not made for this use. The server needs another one.</source>
        <translation>Das Zertifikat wurde nicht für diesen Zweck ausgestellt. Der Server braucht ein anderes.</translation>
    </message>
    <message>
        <source>The key or the signature does not reach what the security policy asks for. Choose another endpoint, or have the server&apos;s certificate made anew.</source>
        <translation>Schlüssel oder Signatur erreichen nicht, was die Sicherheitsrichtlinie verlangt. Wählen Sie einen anderen Endpunkt, oder lassen Sie das Serverzertifikat neu ausstellen.</translation>
    </message>
    <message>
        <source>What the server sent is no certificate, so there is nothing to trust.</source>
        <translation>Was der Server gesendet hat, ist kein Zertifikat; es gibt also nichts, dem zu vertrauen wäre.</translation>
    </message>
    <message>
        <source>Whoever issued this certificate has withdrawn it: somebody else may hold its key. The server needs a new certificate.</source>
        <translation>Der Aussteller hat dieses Zertifikat zurückgezogen: Jemand anderes besitzt vielleicht seinen Schlüssel. Der Server braucht ein neues Zertifikat.</translation>
    </message>
</context>
<context>
    <name>QlumCertificateChainModel</name>
    <message>
        <source>%1 [%2]</source>
        <translation>%1 [%2]</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Trust Status</source>
        <translation>Vertrauensstatus</translation>
    </message>
    <message>
        <source>the certificate is not made for the host of the server&apos;s URL</source>
        <translation>das Zertifikat ist nicht für den Host der Server-URL ausgestellt</translation>
    </message>
</context>
<context>
    <name>QlumCertificateChainNode</name>
    <message>
        <source>Errors</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Known Issuer</source>
        <translation>Bekannter Aussteller</translation>
    </message>
    <message>
        <source>Trusted</source>
        <translation>Vertraut</translation>
    </message>
    <message>
        <source>Untrusted</source>
        <translation>Nicht vertraut</translation>
    </message>
</context>
<context>
    <name>QlumCertificateChecks</name>
    <message>
        <source>AuthorityKeyIdentifier</source>
        <translation>AuthorityKeyIdentifier</translation>
    </message>
    <message>
        <source>AuthorityKeyIdentifier contains the hash of an empty string, this might lead to problems validating the server&apos;s certificate</source>
        <translation>AuthorityKeyIdentifier enthält den Hash einer leeren Zeichenfolge; das kann beim Prüfen des Serverzertifikats zu Problemen führen</translation>
    </message>
    <message>
        <source>AuthorityKeyIdentifier is missing - this can lead to validation problems
If you keep getting this warning, delete all old certificates of the server in the certificate trust list</source>
        <translation>AuthorityKeyIdentifier fehlt - das kann beim Prüfen zu Problemen führen
Erscheint diese Warnung immer wieder, löschen Sie alle alten Zertifikate des Servers aus der Vertrauensliste</translation>
    </message>
    <message>
        <source>AuthorityKeyIdentifier is missing - this extension is mandatory for CA-signed certificates according to the UA specification</source>
        <translation>AuthorityKeyIdentifier fehlt - diese Erweiterung ist laut UA-Spezifikation für CA-signierte Zertifikate vorgeschrieben</translation>
    </message>
    <message>
        <source>BasicConstraints</source>
        <translation>BasicConstraints</translation>
    </message>
    <message>
        <source>Cipher Strength</source>
        <translation>Schlüsselstärke</translation>
    </message>
    <message>
        <source>Common Name</source>
        <translation>Allgemeiner Name</translation>
    </message>
    <message>
        <source>Country</source>
        <translation>Land</translation>
    </message>
    <message>
        <source>DNSNames</source>
        <translation>DNS-Namen</translation>
    </message>
    <message>
        <source>DSA (%1 bit)</source>
        <translation>DSA (%1 Bit)</translation>
    </message>
    <message>
        <source>DomainComponent</source>
        <translation>DomainComponent</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>ExtendedKeyUsage</source>
        <translation>ExtendedKeyUsage</translation>
    </message>
    <message>
        <source>ExtendedKeyUsage is missing - this extension is mandatory according to the UA specification</source>
        <translation>ExtendedKeyUsage fehlt - diese Erweiterung ist laut UA-Spezifikation vorgeschrieben</translation>
    </message>
    <message>
        <source>ExtendedKeyUsage: Shall specify TLS Web Server Authentication and/or TLS Web Client Authentication</source>
        <translation>ExtendedKeyUsage: Muss TLS Web Server Authentication und/oder TLS Web Client Authentication angeben</translation>
    </message>
    <message>
        <source>Extensions</source>
        <translation>Erweiterungen</translation>
    </message>
    <message>
        <source>IPAddresses</source>
        <translation>IP-Adressen</translation>
    </message>
    <message>
        <source>Info</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>Issuer</source>
        <translation>Aussteller</translation>
    </message>
    <message>
        <source>KeyUsage</source>
        <translation>KeyUsage</translation>
    </message>
    <message>
        <source>KeyUsage is missing - this extension is mandatory according to the UA specification</source>
        <translation>KeyUsage fehlt - diese Erweiterung ist laut UA-Spezifikation vorgeschrieben</translation>
    </message>
    <message>
        <source>KeyUsage: Shall include Digital Signature, Non Repudiation, Key Encipherment and Data Encipherment</source>
        <translation>KeyUsage: Muss Digital Signature, Non Repudiation, Key Encipherment und Data Encipherment enthalten</translation>
    </message>
    <message>
        <source>Locality</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Organization</source>
        <translation>Organisation</translation>
    </message>
    <message>
        <source>OrganizationUnit</source>
        <translation>Organisationseinheit</translation>
    </message>
    <message>
        <source>RSA (%1 bit)</source>
        <translation>RSA (%1 Bit)</translation>
    </message>
    <message>
        <source>Serial Number</source>
        <translation>Seriennummer</translation>
    </message>
    <message>
        <source>Signature Algorithm</source>
        <translation>Signaturalgorithmus</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Bundesland</translation>
    </message>
    <message>
        <source>Subject</source>
        <translation>Inhaber</translation>
    </message>
    <message>
        <source>SubjectAltName is missing - this extension is mandatory according to the UA specification</source>
        <translation>SubjectAltName fehlt - diese Erweiterung ist laut UA-Spezifikation vorgeschrieben</translation>
    </message>
    <message>
        <source>SubjectKeyIdentifier</source>
        <translation>SubjectKeyIdentifier</translation>
    </message>
    <message>
        <source>SubjectKeyIdentifier is the hash of an empty string, this might lead to problems validating the server&apos;s certificate</source>
        <translation>SubjectKeyIdentifier ist der Hash einer leeren Zeichenfolge; das kann beim Prüfen des Serverzertifikats zu Problemen führen</translation>
    </message>
    <message>
        <source>The URI returned in the certificate does not match the Application URI of the server (%1).</source>
        <translation>Die URI im Zertifikat stimmt nicht mit der Anwendungs-URI des Servers (%1) überein.</translation>
    </message>
    <message>
        <source>The certificate has expired</source>
        <translation>Das Zertifikat ist abgelaufen</translation>
    </message>
    <message>
        <source>The certificate is not yet valid</source>
        <translation>Das Zertifikat ist noch nicht gültig</translation>
    </message>
    <message>
        <source>The host of the server&apos;s URL (&apos;%1&apos;) cannot be found in the list of IP addresses or DNS names</source>
        <translation>Der Host der Server-URL („%1“) steht nicht in der Liste der IP-Adressen und DNS-Namen</translation>
    </message>
    <message>
        <source>Thumbprint (SHA1)</source>
        <translation>Fingerabdruck (SHA1)</translation>
    </message>
    <message>
        <source>UA Extensions</source>
        <translation>UA-Erweiterungen</translation>
    </message>
    <message>
        <source>URI</source>
        <translation>URI</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>Unknown key type</source>
        <translation>Unbekannter Schlüsseltyp</translation>
    </message>
    <message>
        <source>Unknown signature algorithm</source>
        <translation>Unbekannter Signaturalgorithmus</translation>
    </message>
    <message>
        <source>Valid From</source>
        <translation>Gültig ab</translation>
    </message>
    <message>
        <source>Valid To</source>
        <translation>Gültig bis</translation>
    </message>
    <message>
        <source>Validity</source>
        <translation>Gültigkeit</translation>
    </message>
    <message>
        <source>Weak Cipher Strength, at least 2048 recommended</source>
        <translation>Schwacher Schlüssel, mindestens 2048 empfohlen</translation>
    </message>
    <message>
        <source>Weak SignatureAlgorithm, SHA256 recommended</source>
        <translation>Schwacher Signaturalgorithmus, SHA256 empfohlen</translation>
    </message>
</context>
<context>
    <name>QlumCertificateDetailsModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
</context>
<context>
    <name>QlumCertificateDialog</name>
    <message>
        <source>&lt;b&gt;Accept temporarily&lt;/b&gt;&lt;br&gt;The connection is made with the certificate shown here and with no other. Nothing is stored.</source>
        <translation>&lt;b&gt;Vorübergehend annehmen&lt;/b&gt;&lt;br&gt;Die Verbindung wird mit dem hier gezeigten Zertifikat hergestellt und mit keinem anderen. Gespeichert wird nichts.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Certificate chain&lt;/b&gt;&lt;br&gt;The server&apos;s certificate below the certificates of those who issued it. The icon tells the worst that was found about each.</source>
        <translation>&lt;b&gt;Zertifikatskette&lt;/b&gt;&lt;br&gt;Das Serverzertifikat unter den Zertifikaten derer, die es ausgestellt haben. Das Symbol zeigt das Schlimmste, was zu jedem gefunden wurde.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Certificate details&lt;/b&gt;&lt;br&gt;What the selected certificate says. The tool tip of a coloured line tells what is wrong with it.</source>
        <translation>&lt;b&gt;Zertifikatsdetails&lt;/b&gt;&lt;br&gt;Was das gewählte Zertifikat sagt. Der Tooltip einer farbigen Zeile nennt, was daran falsch ist.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy Thumbprint&lt;/b&gt;&lt;br&gt;Puts the SHA-1 thumbprint on the clipboard, to compare it with the one that the server&apos;s operator names.</source>
        <translation>&lt;b&gt;Fingerabdruck kopieren&lt;/b&gt;&lt;br&gt;Legt den SHA-1-Fingerabdruck in die Zwischenablage, um ihn mit dem zu vergleichen, den der Betreiber des Servers nennt.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Findings&lt;/b&gt;&lt;br&gt;All that was found wrong with the selected certificate, the worst first.</source>
        <translation>&lt;b&gt;Befunde&lt;/b&gt;&lt;br&gt;Alles, was am gewählten Zertifikat beanstandet wurde, das Schlimmste zuerst.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Import CRL&lt;/b&gt;&lt;br&gt;Reads a revocation list from a file, and keeps it when an issuer of this certificate has signed it.</source>
        <translation>&lt;b&gt;Sperrliste importieren&lt;/b&gt;&lt;br&gt;Liest eine Sperrliste aus einer Datei und behält sie, wenn ein Aussteller dieses Zertifikats sie signiert hat.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Save as&lt;/b&gt;&lt;br&gt;Writes the selected certificate to a DER file. Under the proposed name it becomes trusted.</source>
        <translation>&lt;b&gt;Speichern unter&lt;/b&gt;&lt;br&gt;Schreibt das gewählte Zertifikat in eine DER-Datei. Unter dem vorgeschlagenen Namen wird ihm vertraut.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Trust Issuer&lt;/b&gt;&lt;br&gt;Copies the certificate of whoever issued the server&apos;s one into Tavelin&apos;s trust list, after a question.</source>
        <translation>&lt;b&gt;Aussteller vertrauen&lt;/b&gt;&lt;br&gt;Kopiert nach einer Rückfrage das Zertifikat des Ausstellers des Serverzertifikats in Tavelins Vertrauensliste.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Trust&lt;/b&gt;&lt;br&gt;Copies the certificate into Tavelin&apos;s trust list, where the certificate manager shows it. Servers that use it or a certificate issued by it are then trusted.</source>
        <translation>&lt;b&gt;Vertrauen&lt;/b&gt;&lt;br&gt;Kopiert das Zertifikat in Tavelins Vertrauensliste, wo es die Zertifikatsverwaltung zeigt. Servern, die es oder ein von ihm ausgestelltes Zertifikat verwenden, wird dann vertraut.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Use it all the same&lt;/b&gt;&lt;br&gt;Devices that are reached by an address, or whose clock is wrong, often have such certificates. Compare the thumbprint first. When the server shows another certificate, you are asked again.</source>
        <translation>&lt;b&gt;Trotzdem verwenden&lt;/b&gt;&lt;br&gt;Geräte, die über eine Adresse erreicht werden oder deren Uhr falsch geht, haben oft solche Zertifikate. Vergleichen Sie zuerst den Fingerabdruck. Zeigt der Server ein anderes Zertifikat, werden Sie erneut gefragt.</translation>
    </message>
    <message>
        <source>Accept the server certificate temporarily for this session</source>
        <translation>Das Serverzertifikat vorübergehend für diese Sitzung annehmen</translation>
    </message>
    <message>
        <source>Add a revocation list of the issuer to the certificate store</source>
        <translation>Eine Sperrliste des Ausstellers dem Zertifikatsspeicher hinzufügen</translation>
    </message>
    <message>
        <source>Certificate Validation</source>
        <translation>Zertifikatsprüfung</translation>
    </message>
    <message>
        <source>Certificate chain</source>
        <translation>Zertifikatskette</translation>
    </message>
    <message>
        <source>Certificate details</source>
        <translation>Zertifikatsdetails</translation>
    </message>
    <message>
        <source>Connect although the validation failed, and ask again next time</source>
        <translation>Trotz fehlgeschlagener Prüfung verbinden und beim nächsten Mal erneut fragen</translation>
    </message>
    <message>
        <source>Connect to the server</source>
        <translation>Mit dem Server verbinden</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Fortfahren</translation>
    </message>
    <message>
        <source>Copy Thumbprint</source>
        <translation>Fingerabdruck kopieren</translation>
    </message>
    <message>
        <source>Copy the thumbprint of the selected certificate</source>
        <translation>Den Fingerabdruck des gewählten Zertifikats kopieren</translation>
    </message>
    <message>
        <source>Do not connect</source>
        <translation>Nicht verbinden</translation>
    </message>
    <message>
        <source>Every server with a certificate issued by &apos;%1&apos; will be trusted, now and later. Compare the thumbprint with the one that the issuer names:
%2

Do you want to trust it?</source>
        <translation>Jedem Server mit einem von „%1“ ausgestellten Zertifikat wird jetzt und künftig vertraut. Vergleichen Sie den Fingerabdruck mit dem, den der Aussteller nennt:
%2

Möchten Sie ihm vertrauen?</translation>
    </message>
    <message>
        <source>Findings</source>
        <translation>Befunde</translation>
    </message>
    <message>
        <source>Holds for this server and this certificate only</source>
        <translation>Gilt nur für diesen Server und dieses Zertifikat</translation>
    </message>
    <message>
        <source>Import CRL</source>
        <translation>Sperrliste importieren</translation>
    </message>
    <message>
        <source>Import CRL...</source>
        <translation>Sperrliste importieren...</translation>
    </message>
    <message>
        <source>None of the issuers of this certificate has signed the list.</source>
        <translation>Keiner der Aussteller dieses Zertifikats hat die Liste signiert.</translation>
    </message>
    <message>
        <source>Revocation lists (*.crl *.der *.pem);;All files (*)</source>
        <translation>Sperrlisten (*.crl *.der *.pem);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Save Certificate</source>
        <translation>Zertifikat speichern</translation>
    </message>
    <message>
        <source>Save as...</source>
        <translation>Speichern unter...</translation>
    </message>
    <message>
        <source>Save the selected certificate to a file</source>
        <translation>Das gewählte Zertifikat in eine Datei speichern</translation>
    </message>
    <message>
        <source>The certificate could not be written to &apos;%1&apos;: %2</source>
        <translation>Das Zertifikat konnte nicht nach „%1“ geschrieben werden: %2</translation>
    </message>
    <message>
        <source>The certificate could not be written to &apos;%1&apos;; the log tells why.</source>
        <translation>Das Zertifikat konnte nicht nach „%1“ geschrieben werden; den Grund nennt das Protokoll.</translation>
    </message>
    <message>
        <source>The certificate could not be written.</source>
        <translation>Das Zertifikat konnte nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>The certificate of server &apos;&lt;b&gt;%1&lt;/b&gt;&apos; was validated successfully.</source>
        <translation>Das Zertifikat des Servers „&lt;b&gt;%1&lt;/b&gt;“ wurde erfolgreich geprüft.</translation>
    </message>
    <message>
        <source>The file holds no revocation list.</source>
        <translation>Die Datei enthält keine Sperrliste.</translation>
    </message>
    <message>
        <source>The list could not be written to &apos;%1&apos;.</source>
        <translation>Die Liste konnte nicht nach „%1“ geschrieben werden.</translation>
    </message>
    <message>
        <source>Thumbprint (SHA1): %1</source>
        <translation>Fingerabdruck (SHA1): %1</translation>
    </message>
    <message>
        <source>Trust Issuer</source>
        <translation>Aussteller vertrauen</translation>
    </message>
    <message>
        <source>Trust Issuer...</source>
        <translation>Aussteller vertrauen...</translation>
    </message>
    <message>
        <source>Trust Server Certificate</source>
        <translation>Serverzertifikat vertrauen</translation>
    </message>
    <message>
        <source>Trust TLS Certificate</source>
        <translation>TLS-Zertifikat vertrauen</translation>
    </message>
    <message>
        <source>Trust all servers with a certificate of this issuer</source>
        <translation>Allen Servern mit einem Zertifikat dieses Ausstellers vertrauen</translation>
    </message>
    <message>
        <source>Trust the selected certificate permanently</source>
        <translation>Dem gewählten Zertifikat dauerhaft vertrauen</translation>
    </message>
    <message>
        <source>Use it for this server although it is not valid today</source>
        <translation>Für diesen Server verwenden, obwohl es heute nicht gültig ist</translation>
    </message>
    <message>
        <source>Use it for this server although it is of another host</source>
        <translation>Für diesen Server verwenden, obwohl es zu einem anderen Host gehört</translation>
    </message>
    <message>
        <source>Use it for this server although it is of another host and not valid today</source>
        <translation>Für diesen Server verwenden, obwohl es zu einem anderen Host gehört und heute nicht gültig ist</translation>
    </message>
    <message>
        <source>Validating the TLS certificate of server &apos;&lt;b&gt;%1&lt;/b&gt;&apos; returned an error:</source>
        <translation>Die Prüfung des TLS-Zertifikats des Servers „&lt;b&gt;%1&lt;/b&gt;“ ergab einen Fehler:</translation>
    </message>
    <message>
        <source>Validating the certificate of server &apos;&lt;b&gt;%1&lt;/b&gt;&apos; returned an error:</source>
        <translation>Die Prüfung des Zertifikats des Servers „&lt;b&gt;%1&lt;/b&gt;“ ergab einen Fehler:</translation>
    </message>
    <message>
        <source>Whole value</source>
        <translation>Ganzer Wert</translation>
    </message>
    <message>
        <source>certificate</source>
        <translation>Zertifikat</translation>
    </message>
    <message>
        <source>certificate chain</source>
        <translation>Zertifikatskette</translation>
    </message>
</context>
<context>
    <name>QlumCertificateManager</name>
    <message numerus="yes">
        <source>
Its file holds %n certificates, which are all deleted.</source>
        <translation>
            <numerusform>
Seine Datei enthält %n Zertifikat, das gelöscht wird.</numerusform>
            <numerusform>
Seine Datei enthält %n Zertifikate, die alle gelöscht werden.</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 certificates</source>
        <translation>%1 Zertifikate</translation>
    </message>
    <message>
        <source>%1 could not be written to the store.</source>
        <translation>%1 konnte nicht in den Speicher geschrieben werden.</translation>
    </message>
    <message>
        <source>%1 is neither a certificate nor a revocation list.</source>
        <translation>%1 ist weder ein Zertifikat noch eine Sperrliste.</translation>
    </message>
    <message>
        <source>%1 revocation lists</source>
        <translation>%1 Sperrlisten</translation>
    </message>
    <message>
        <source>&amp;Copy Application Certificate To...</source>
        <translation>Anwendungszertifikat &amp;kopieren nach...</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>Öff&amp;nen...</translation>
    </message>
    <message>
        <source>&amp;Reject</source>
        <translation>Able&amp;hnen</translation>
    </message>
    <message>
        <source>&amp;Trust</source>
        <translation>&amp;Vertrauen</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy Application Certificate To&lt;/b&gt;&lt;br&gt;Saves a copy of Tavelin&apos;s own certificate, which servers are to be given so that they trust Tavelin. The private key stays here.</source>
        <translation>&lt;b&gt;Anwendungszertifikat kopieren nach&lt;/b&gt;&lt;br&gt;Speichert eine Kopie von Tavelins eigenem Zertifikat, die Server bekommen, damit sie Tavelin vertrauen. Der private Schlüssel bleibt hier.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy Thumbprint&lt;/b&gt;&lt;br&gt;The number to compare with what the owner of the certificate tells.</source>
        <translation>&lt;b&gt;Fingerabdruck kopieren&lt;/b&gt;&lt;br&gt;Die Zahl, die mit der zu vergleichen ist, die der Besitzer des Zertifikats nennt.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Create new Application Certificate&lt;/b&gt;&lt;br&gt;Makes a new certificate and key and replaces the old ones. Servers must be told to trust the new one.</source>
        <translation>&lt;b&gt;Neues Anwendungszertifikat erstellen&lt;/b&gt;&lt;br&gt;Erstellt ein neues Zertifikat mit Schlüssel und ersetzt die alten. Servern muss gesagt werden, dass sie dem neuen vertrauen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Delete&lt;/b&gt;&lt;br&gt;Removes the certificate&apos;s file for good.</source>
        <translation>&lt;b&gt;Löschen&lt;/b&gt;&lt;br&gt;Entfernt die Datei des Zertifikats endgültig.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Delete&lt;/b&gt;&lt;br&gt;Removes the list&apos;s file for good.</source>
        <translation>&lt;b&gt;Löschen&lt;/b&gt;&lt;br&gt;Entfernt die Datei der Liste endgültig.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Open Own Certificate Location&lt;/b&gt;&lt;br&gt;Shows the folder of Tavelin&apos;s own certificate in the file manager.</source>
        <translation>&lt;b&gt;Ordner des eigenen Zertifikats öffnen&lt;/b&gt;&lt;br&gt;Zeigt den Ordner von Tavelins eigenem Zertifikat im Dateimanager.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Open&lt;/b&gt;&lt;br&gt;Opens the certificate&apos;s file with the desktop&apos;s program for it.</source>
        <translation>&lt;b&gt;Öffnen&lt;/b&gt;&lt;br&gt;Öffnet die Datei des Zertifikats mit dem Programm des Desktops dafür.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Open&lt;/b&gt;&lt;br&gt;Opens the list&apos;s file with the desktop&apos;s program for it.</source>
        <translation>&lt;b&gt;Öffnen&lt;/b&gt;&lt;br&gt;Öffnet die Datei der Liste mit dem Programm des Desktops dafür.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Refresh&lt;/b&gt;&lt;br&gt;Shows what is in the folders now.</source>
        <translation>&lt;b&gt;Auffrischen&lt;/b&gt;&lt;br&gt;Zeigt, was jetzt in den Ordnern ist.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Reject&lt;/b&gt;&lt;br&gt;Moves a trusted certificate to the rejected ones. A server that uses it is asked about again.</source>
        <translation>&lt;b&gt;Ablehnen&lt;/b&gt;&lt;br&gt;Verschiebt ein vertrautes Zertifikat zu den abgelehnten. Nach einem Server, der es verwendet, wird wieder gefragt.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Trust&lt;/b&gt;&lt;br&gt;Moves a rejected certificate to the trusted ones.</source>
        <translation>&lt;b&gt;Vertrauen&lt;/b&gt;&lt;br&gt;Verschiebt ein abgelehntes Zertifikat zu den vertrauten.</translation>
    </message>
    <message>
        <source>Add Certificates</source>
        <translation>Zertifikate hinzufügen</translation>
    </message>
    <message>
        <source>Certificate Not Found</source>
        <translation>Zertifikat nicht gefunden</translation>
    </message>
    <message>
        <source>Certificate Revocation Lists</source>
        <translation>Sperrlisten</translation>
    </message>
    <message>
        <source>Certificates</source>
        <translation>Zertifikate</translation>
    </message>
    <message>
        <source>Certificates (*.der)</source>
        <translation>Zertifikate (*.der)</translation>
    </message>
    <message>
        <source>Copy Application Certificate To</source>
        <translation>Anwendungszertifikat kopieren nach</translation>
    </message>
    <message>
        <source>Copy T&amp;humbprint</source>
        <translation>Finger&amp;abdruck kopieren</translation>
    </message>
    <message>
        <source>Copy the SHA-1 thumbprint to the clipboard</source>
        <translation>Den SHA-1-Fingerabdruck in die Zwischenablage kopieren</translation>
    </message>
    <message>
        <source>Could Not Copy Certificate</source>
        <translation>Zertifikat konnte nicht kopiert werden</translation>
    </message>
    <message>
        <source>Could Not Create Certificate</source>
        <translation>Zertifikat konnte nicht erstellt werden</translation>
    </message>
    <message>
        <source>Could not delete CRL %1</source>
        <translation>Sperrliste %1 konnte nicht gelöscht werden</translation>
    </message>
    <message>
        <source>Could not delete certificate %1</source>
        <translation>Zertifikat %1 konnte nicht gelöscht werden</translation>
    </message>
    <message>
        <source>Could not move certificate %1 to the rejected directory</source>
        <translation>Zertifikat %1 konnte nicht in den Ordner der abgelehnten verschoben werden</translation>
    </message>
    <message>
        <source>Could not move certificate %1 to the trusted directory</source>
        <translation>Zertifikat %1 konnte nicht in den Ordner der vertrauten verschoben werden</translation>
    </message>
    <message>
        <source>Create &amp;new Application Certificate...</source>
        <translation>Neues An&amp;wendungszertifikat erstellen...</translation>
    </message>
    <message>
        <source>Delete CRL</source>
        <translation>Sperrliste löschen</translation>
    </message>
    <message>
        <source>Delete Certificate</source>
        <translation>Zertifikat löschen</translation>
    </message>
    <message>
        <source>Delete the CRL</source>
        <translation>Die Sperrliste löschen</translation>
    </message>
    <message>
        <source>Delete the certificate</source>
        <translation>Das Zertifikat löschen</translation>
    </message>
    <message>
        <source>Do you really want to delete the selected CRL?</source>
        <translation>Möchten Sie die gewählte Sperrliste wirklich löschen?</translation>
    </message>
    <message>
        <source>Do you really want to delete the selected certificate?</source>
        <translation>Möchten Sie das gewählte Zertifikat wirklich löschen?</translation>
    </message>
    <message>
        <source>Do you want to add the dropped files (%1) to the store &apos;%2&apos;?</source>
        <translation>Möchten Sie die abgelegten Dateien (%1) dem Speicher „%2“ hinzufügen?</translation>
    </message>
    <message>
        <source>Issuers</source>
        <translation>Aussteller</translation>
    </message>
    <message>
        <source>Open CRL in External Viewer</source>
        <translation>Sperrliste in externem Programm öffnen</translation>
    </message>
    <message>
        <source>Open Certificate in External Viewer</source>
        <translation>Zertifikat in externem Programm öffnen</translation>
    </message>
    <message>
        <source>Open O&amp;wn Certificate Location</source>
        <translation>Ordner des &amp;eigenen Zertifikats öffnen</translation>
    </message>
    <message>
        <source>Open the folder of the application&apos;s own certificate</source>
        <translation>Den Ordner des eigenen Zertifikats der Anwendung öffnen</translation>
    </message>
    <message>
        <source>R&amp;efresh</source>
        <translation>A&amp;uffrischen</translation>
    </message>
    <message>
        <source>Read all stores again</source>
        <translation>Alle Speicher erneut lesen</translation>
    </message>
    <message>
        <source>Replace the application&apos;s own certificate and its key</source>
        <translation>Das eigene Zertifikat der Anwendung und seinen Schlüssel ersetzen</translation>
    </message>
    <message>
        <source>Save a copy of the application&apos;s own certificate</source>
        <translation>Eine Kopie des eigenen Zertifikats der Anwendung speichern</translation>
    </message>
    <message>
        <source>Set the state of this certificate to Rejected</source>
        <translation>Den Zustand dieses Zertifikats auf „Abgelehnt“ setzen</translation>
    </message>
    <message>
        <source>Set the state of this certificate to Trusted</source>
        <translation>Den Zustand dieses Zertifikats auf „Vertraut“ setzen</translation>
    </message>
    <message>
        <source>TLS Issuers</source>
        <translation>TLS-Aussteller</translation>
    </message>
    <message>
        <source>The application certificate &apos;%1&apos; does not exist.</source>
        <translation>Das Anwendungszertifikat „%1“ existiert nicht.</translation>
    </message>
    <message>
        <source>The application certificate could not be copied to &apos;%1&apos;.</source>
        <translation>Das Anwendungszertifikat konnte nicht nach „%1“ kopiert werden.</translation>
    </message>
    <message>
        <source>The application certificate could not be created:</source>
        <translation>Das Anwendungszertifikat konnte nicht erstellt werden:</translation>
    </message>
    <message numerus="yes">
        <source>The file holds %n certificates, which all become trusted.
Do you want to trust all of them?</source>
        <translation>
            <numerusform>Die Datei enthält %n Zertifikat, das vertrauenswürdig wird.
Möchten Sie ihm vertrauen?</numerusform>
            <numerusform>Die Datei enthält %n Zertifikate, die alle vertrauenswürdig werden.
Möchten Sie allen vertrauen?</numerusform>
        </translation>
    </message>
    <message>
        <source>Trust Certificates</source>
        <translation>Zertifikaten vertrauen</translation>
    </message>
    <message>
        <source>Trusted</source>
        <translation>Vertraut</translation>
    </message>
</context>
<context>
    <name>QlumCertificateManagerDialog</name>
    <message>
        <source>Manage Certificates</source>
        <translation>Zertifikate verwalten</translation>
    </message>
</context>
<context>
    <name>QlumCertificateModel</name>
    <message>
        <source>%1 bits</source>
        <translation>%1 Bits</translation>
    </message>
    <message>
        <source>AppURI</source>
        <translation>Anwendungs-URI</translation>
    </message>
    <message>
        <source>Country</source>
        <translation>Land</translation>
    </message>
    <message>
        <source>Days Left</source>
        <translation>Tage übrig</translation>
    </message>
    <message>
        <source>DomainName</source>
        <translation>Domänenname</translation>
    </message>
    <message>
        <source>Filename</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>IP</source>
        <translation>IP</translation>
    </message>
    <message>
        <source>Key Size</source>
        <translation>Schlüssellänge</translation>
    </message>
    <message>
        <source>Known Issuer</source>
        <translation>Bekannter Aussteller</translation>
    </message>
    <message>
        <source>Locality</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Organization</source>
        <translation>Organisation</translation>
    </message>
    <message>
        <source>OrganizationUnit</source>
        <translation>Organisationseinheit</translation>
    </message>
    <message>
        <source>Own Certificate</source>
        <translation>Eigenes Zertifikat</translation>
    </message>
    <message>
        <source>Signature</source>
        <translation>Signatur</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Bundesland</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>The certificate has expired</source>
        <translation>Das Zertifikat ist abgelaufen</translation>
    </message>
    <message>
        <source>The certificate is not yet valid</source>
        <translation>Das Zertifikat ist noch nicht gültig</translation>
    </message>
    <message>
        <source>The certificate will expire soon</source>
        <translation>Das Zertifikat läuft bald ab</translation>
    </message>
    <message>
        <source>The file, or a part of it, is no certificate that can be read; that part is not trusted</source>
        <translation>Die Datei oder ein Teil davon ist kein lesbares Zertifikat; diesem Teil wird nicht vertraut</translation>
    </message>
    <message>
        <source>Thumbprint</source>
        <translation>Fingerabdruck</translation>
    </message>
    <message>
        <source>Trusted</source>
        <translation>Vertraut</translation>
    </message>
    <message>
        <source>Unreadable</source>
        <translation>Unlesbar</translation>
    </message>
    <message>
        <source>Untrusted</source>
        <translation>Nicht vertraut</translation>
    </message>
    <message>
        <source>Valid From</source>
        <translation>Gültig ab</translation>
    </message>
    <message>
        <source>Valid To</source>
        <translation>Gültig bis</translation>
    </message>
</context>
<context>
    <name>QlumCertificateRefusedDialog</name>
    <message>
        <source>&amp;Export...</source>
        <translation>&amp;Exportieren...</translation>
    </message>
    <message>
        <source>&amp;Location:</source>
        <translation>&amp;Ort:</translation>
    </message>
    <message>
        <source>&amp;Open Location</source>
        <translation>Ort ö&amp;ffnen</translation>
    </message>
    <message>
        <source>&amp;Thumbprint (SHA1):</source>
        <translation>&amp;Fingerabdruck (SHA1):</translation>
    </message>
    <message>
        <source>*.der</source>
        <translation>*.der</translation>
    </message>
    <message>
        <source>Application &amp;URI:</source>
        <translation>Anwendungs-&amp;URI:</translation>
    </message>
    <message>
        <source>Certificate &amp;name:</source>
        <translation>Zertifikats&amp;name:</translation>
    </message>
    <message>
        <source>Certificate Refused by the Server</source>
        <translation>Zertifikat vom Server abgelehnt</translation>
    </message>
    <message>
        <source>Export Certificate</source>
        <translation>Zertifikat exportieren</translation>
    </message>
    <message>
        <source>Most servers answer so when they do not trust the client: the server has most likely refused Tavelin&apos;s own certificate, shown below. It is not about the server&apos;s certificate.</source>
        <translation>Die meisten Server antworten so, wenn sie dem Client nicht vertrauen: Der Server hat sehr wahrscheinlich Tavelins eigenes Zertifikat abgelehnt, das unten steht. Um das Serverzertifikat geht es nicht.</translation>
    </message>
    <message>
        <source>Most servers keep the certificates that they have refused: have Tavelin&apos;s certificate trusted there, or export it and bring it to the server&apos;s operator. Then connect again.</source>
        <translation>Die meisten Server bewahren abgelehnte Zertifikate auf: Lassen Sie dort Tavelins Zertifikat vertrauen, oder exportieren Sie es und bringen Sie es dem Betreiber des Servers. Verbinden Sie dann erneut.</translation>
    </message>
    <message>
        <source>No program is there to show folders. The folder is:
%1</source>
        <translation>Es gibt kein Programm, das Ordner zeigt. Der Ordner ist:
%1</translation>
    </message>
    <message>
        <source>Show the folder that holds Tavelin&apos;s certificate</source>
        <translation>Den Ordner mit Tavelins Zertifikat zeigen</translation>
    </message>
    <message>
        <source>Tavelin&apos;s certificate was exported to &apos;%1&apos;.</source>
        <translation>Tavelins Zertifikat wurde nach „%1“ exportiert.</translation>
    </message>
    <message>
        <source>The certificate could not be written.</source>
        <translation>Das Zertifikat konnte nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>The server &apos;%1&apos; ended the connection with &apos;%2&apos;.</source>
        <translation>Der Server „%1“ hat die Verbindung mit „%2“ beendet.</translation>
    </message>
    <message>
        <source>The server has refused Tavelin&apos;s own certificate, shown below, because of its validity. Check the clocks of this computer and of the server, or create a new certificate.</source>
        <translation>Der Server hat Tavelins eigenes Zertifikat, das unten steht, wegen seiner Gültigkeit abgelehnt. Prüfen Sie die Uhren dieses Rechners und des Servers, oder erstellen Sie ein neues Zertifikat.</translation>
    </message>
    <message>
        <source>The server has refused Tavelin&apos;s own certificate, shown below. It is not about the server&apos;s certificate.</source>
        <translation>Der Server hat Tavelins eigenes Zertifikat abgelehnt, das unten steht. Um das Serverzertifikat geht es nicht.</translation>
    </message>
    <message>
        <source>The server has refused Tavelin&apos;s own certificate, shown below: its key or signature is weaker than the server demands. Create a new certificate.</source>
        <translation>Der Server hat Tavelins eigenes Zertifikat abgelehnt, das unten steht: Schlüssel oder Signatur sind schwächer, als der Server verlangt. Erstellen Sie ein neues Zertifikat.</translation>
    </message>
    <message>
        <source>Write Tavelin&apos;s certificate, without its key, to a file</source>
        <translation>Tavelins Zertifikat ohne seinen Schlüssel in eine Datei schreiben</translation>
    </message>
</context>
<context>
    <name>QlumCertificateStore</name>
    <message>
        <source>korvanda/tavelin/PKI/issuers/certs</source>
        <translation>korvanda/tavelin/PKI/issuers/certs</translation>
    </message>
    <message>
        <source>korvanda/tavelin/PKI/issuers/crl</source>
        <translation>korvanda/tavelin/PKI/issuers/crl</translation>
    </message>
    <message>
        <source>korvanda/tavelin/PKI/own/certs</source>
        <translation>korvanda/tavelin/PKI/own/certs</translation>
    </message>
    <message>
        <source>korvanda/tavelin/PKI/own/private</source>
        <translation>korvanda/tavelin/PKI/own/private</translation>
    </message>
    <message>
        <source>korvanda/tavelin/PKI/rejected</source>
        <translation>korvanda/tavelin/PKI/rejected</translation>
    </message>
    <message>
        <source>korvanda/tavelin/PKI/tls_issuers/certs</source>
        <translation>korvanda/tavelin/PKI/tls_issuers/certs</translation>
    </message>
    <message>
        <source>korvanda/tavelin/PKI/tls_issuers/crl</source>
        <translation>korvanda/tavelin/PKI/tls_issuers/crl</translation>
    </message>
    <message>
        <source>korvanda/tavelin/PKI/trusted/certs</source>
        <translation>korvanda/tavelin/PKI/trusted/certs</translation>
    </message>
    <message>
        <source>korvanda/tavelin/PKI/trusted/crl</source>
        <translation>korvanda/tavelin/PKI/trusted/crl</translation>
    </message>
    <message>
        <source>korvanda/tavelin/trace</source>
        <translation>korvanda/tavelin/trace</translation>
    </message>
</context>
<context>
    <name>QlumCertificateViewer</name>
    <message>
        <source>&lt;b&gt;Certificate details&lt;/b&gt;&lt;br&gt;What the selected certificate says. The tool tip of a coloured line tells what is wrong with it.</source>
        <translation>&lt;b&gt;Zertifikatsdetails&lt;/b&gt;&lt;br&gt;Was das gewählte Zertifikat sagt. Der Tooltip einer farbigen Zeile nennt, was daran falsch ist.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Certificates&lt;/b&gt;&lt;br&gt;All that came with the certificate, which is the first. The icon tells the worst that is odd about each.</source>
        <translation>&lt;b&gt;Zertifikate&lt;/b&gt;&lt;br&gt;Alles, was mit dem Zertifikat kam; es selbst steht zuerst. Das Symbol zeigt das Schlimmste, was an jedem auffällt.</translation>
    </message>
    <message>
        <source>Certificate</source>
        <translation>Zertifikat</translation>
    </message>
    <message>
        <source>Certificate details</source>
        <translation>Zertifikatsdetails</translation>
    </message>
    <message>
        <source>Certificates</source>
        <translation>Zertifikate</translation>
    </message>
    <message>
        <source>These bytes are not a certificate.</source>
        <translation>Diese Bytes sind kein Zertifikat.</translation>
    </message>
    <message>
        <source>certificate</source>
        <translation>Zertifikat</translation>
    </message>
</context>
<context>
    <name>QlumCertificates</name>
    <message>
        <source>Could Not Create Certificate</source>
        <translation>Zertifikat konnte nicht erstellt werden</translation>
    </message>
    <message>
        <source>Created a new certificate for Tavelin: %1, application URI %2.</source>
        <translation>Ein neues Zertifikat für Tavelin wurde erstellt: %1, Anwendungs-URI %2.</translation>
    </message>
    <message>
        <source>Loaded Tavelin&apos;s certificate.</source>
        <translation>Tavelins Zertifikat wurde geladen.</translation>
    </message>
    <message>
        <source>Private Key Not Found</source>
        <translation>Privater Schlüssel nicht gefunden</translation>
    </message>
    <message>
        <source>Private Key does not match Certificate</source>
        <translation>Privater Schlüssel passt nicht zum Zertifikat</translation>
    </message>
    <message>
        <source>Tavelin Certificate Generation Setup</source>
        <translation>Tavelin - Zertifikat erstellen</translation>
    </message>
    <message>
        <source>Tavelin Certificate Store</source>
        <translation>Zertifikatsspeicher von Tavelin</translation>
    </message>
    <message>
        <source>Tavelin goes on without its private key: connections with security are not possible.</source>
        <translation>Tavelin arbeitet ohne seinen privaten Schlüssel weiter: Verbindungen mit Sicherheit sind nicht möglich.</translation>
    </message>
    <message>
        <source>Tavelin has no certificate of its own: only servers without security can be connected. The next start asks for one again.</source>
        <translation>Tavelin hat kein eigenes Zertifikat: Nur Server ohne Sicherheit können verbunden werden. Der nächste Start fragt erneut danach.</translation>
    </message>
    <message>
        <source>Tavelin&apos;s certificate has expired.
Do you want to create a new one?</source>
        <translation>Tavelins Zertifikat ist abgelaufen.
Möchten Sie ein neues erstellen?</translation>
    </message>
    <message numerus="yes">
        <source>Tavelin&apos;s certificate will expire in %n days!
Do you want to create a new one?</source>
        <translation>
            <numerusform>Das Zertifikat von Tavelin läuft in %n Tag ab!
Möchten Sie ein neues erstellen?</numerusform>
            <numerusform>Das Zertifikat von Tavelin läuft in %n Tagen ab!
Möchten Sie ein neues erstellen?</numerusform>
        </translation>
    </message>
    <message>
        <source>The PEM password you have specified was not correct. Do you want to retry it?</source>
        <translation>Das angegebene PEM-Kennwort war nicht richtig. Möchten Sie es erneut versuchen?</translation>
    </message>
    <message>
        <source>The PEM password you have specified was not correct. Do you want to retry it? Press &apos;Reset&apos; to generate a new key.</source>
        <translation>Das angegebene PEM-Kennwort war nicht richtig. Möchten Sie es erneut versuchen? Mit „Zurücksetzen“ wird ein neuer Schlüssel erzeugt.</translation>
    </message>
    <message>
        <source>The application URI &apos;%1&apos; of the existing instance certificate is not compliant with the standard form of application URIs
(e.g. &apos;urn:localhost:Korvanda:Tavelin&apos;).

Press OK to generate a new X.509 application instance certificate and the corresponding RSA keys.</source>
        <translation>Die Anwendungs-URI „%1“ des vorhandenen Anwendungszertifikats entspricht nicht der üblichen Form von Anwendungs-URIs
(z. B. „urn:localhost:Korvanda:Tavelin“).

Mit OK werden ein neues X.509-Anwendungszertifikat und die zugehörigen RSA-Schlüssel erzeugt.</translation>
    </message>
    <message>
        <source>The application certificate could not be created:</source>
        <translation>Das Anwendungszertifikat konnte nicht erstellt werden:</translation>
    </message>
    <message>
        <source>The certificate&apos;s private key could not be found.</source>
        <translation>Der private Schlüssel des Zertifikats wurde nicht gefunden.</translation>
    </message>
    <message>
        <source>The extensions &apos;SubjectKeyIdentifier&apos; and &apos;AuthorityKeyIdentifier&apos; of Tavelin&apos;s certificate have not been set correctly. The public key hash contained in these extensions is the hash of an empty string. This might lead to problems connecting to servers.
Do you want to create a new one?</source>
        <translation>Die Erweiterungen „SubjectKeyIdentifier“ und „AuthorityKeyIdentifier“ in Tavelins Zertifikat sind nicht richtig gesetzt. Der Hash des öffentlichen Schlüssels darin ist der einer leeren Zeichenfolge. Das kann beim Verbinden mit Servern zu Problemen führen.
Möchten Sie ein neues erstellen?</translation>
    </message>
    <message>
        <source>The private key does not match the certificate&apos;s public key.</source>
        <translation>Der private Schlüssel passt nicht zum öffentlichen Schlüssel des Zertifikats.</translation>
    </message>
    <message>
        <source>The private key does not match the certificate&apos;s public key.
Do you want to create a new certificate?</source>
        <translation>Der private Schlüssel passt nicht zum öffentlichen Schlüssel des Zertifikats.
Möchten Sie ein neues Zertifikat erstellen?</translation>
    </message>
    <message>
        <source>Welcome to the Tavelin Initial Application Setup</source>
        <translation>Willkommen zur Ersteinrichtung von Tavelin</translation>
    </message>
    <message>
        <source>When starting Tavelin for the first time, you have to create an application instance certificate to identify your installation.
This is needed to use OPC Unified Architecture security. UA security allows you to authenticate your application as well as to use encryption and digital signatures to protect your communication.

Press OK to generate your personal X.509 application instance certificate and the corresponding RSA keys.</source>
        <translation>Beim ersten Start von Tavelin müssen Sie ein Anwendungszertifikat erstellen, das Ihre Installation ausweist.
Ohne es lässt sich die Sicherheit von OPC Unified Architecture nicht nutzen. Damit weist sich Ihre Anwendung aus, und die Kommunikation wird durch Verschlüsselung und digitale Signaturen geschützt.

Mit OK werden Ihr persönliches X.509-Anwendungszertifikat und die zugehörigen RSA-Schlüssel erzeugt.</translation>
    </message>
    <message>
        <source>Wrong password</source>
        <translation>Falsches Kennwort</translation>
    </message>
</context>
<context>
    <name>QlumChangeLogModel</name>
    <message>
        <source>%1, the server&apos;s queue has lost values before it</source>
        <translation>%1, vorher hat die Warteschlange des Servers Werte verloren</translation>
    </message>
    <message>
        <source>Display Name</source>
        <translation>Anzeigename</translation>
    </message>
    <message>
        <source>Node Id</source>
        <translation>NodeId</translation>
    </message>
    <message>
        <source>Received</source>
        <translation>Empfangen</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Server Time</source>
        <translation>Serverzeit</translation>
    </message>
    <message>
        <source>Source Time</source>
        <translation>Quellzeit</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
</context>
<context>
    <name>QlumChangeLogPart</name>
    <message numerus="yes">
        <source>%n row(s) are not logged.</source>
        <translation>
            <numerusform>%n Zeile wird nicht mitgeschrieben.</numerusform>
            <numerusform>%n Zeilen werden nicht mitgeschrieben.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n row(s) logged</source>
        <translation>
            <numerusform>%n Zeile mitgeschrieben</numerusform>
            <numerusform>%n Zeilen mitgeschrieben</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Clear</source>
        <translation>&amp;Leeren</translation>
    </message>
    <message>
        <source>&amp;Export as CSV...</source>
        <translation>Als CSV &amp;exportieren...</translation>
    </message>
    <message>
        <source>&amp;Follow</source>
        <translation>&amp;Folgen</translation>
    </message>
    <message>
        <source>&amp;Log Changes</source>
        <translation>Änderungen &amp;mitschreiben</translation>
    </message>
    <message>
        <source>&amp;Log Selected Rows</source>
        <translation>Gewählte Zeilen &amp;mitschreiben</translation>
    </message>
    <message>
        <source>&amp;Stop Logging</source>
        <translation>Mitschreiben &amp;beenden</translation>
    </message>
    <message>
        <source>&amp;Stop Selected Rows</source>
        <translation>Gewählte Zeilen &amp;beenden</translation>
    </message>
    <message>
        <source>, %1 came too fast to be recorded</source>
        <translation>, %1 kamen zu schnell, um aufgezeichnet zu werden</translation>
    </message>
    <message>
        <source>, %1 older changes were dropped</source>
        <translation>, %1 ältere Änderungen wurden verworfen</translation>
    </message>
    <message>
        <source>A view logs %1 rows at most. Stop logging others, or open a second view.</source>
        <translation>Eine Ansicht schreibt höchstens %1 Zeilen mit. Beenden Sie andere, oder öffnen Sie eine zweite Ansicht.</translation>
    </message>
    <message>
        <source>Ends the recording of the rows that are selected in the table above.</source>
        <translation>Beendet die Aufzeichnung der Zeilen, die oben in der Tabelle gewählt sind.</translation>
    </message>
    <message>
        <source>Ends the recording of the selected rows; the log stays.</source>
        <translation>Beendet die Aufzeichnung der gewählten Zeilen; das Mitgeschriebene bleibt.</translation>
    </message>
    <message>
        <source>Forgets what was recorded.</source>
        <translation>Vergisst, was aufgezeichnet wurde.</translation>
    </message>
    <message>
        <source>Keeps the newest change in sight.</source>
        <translation>Hält die neueste Änderung im Blick.</translation>
    </message>
    <message>
        <source>Log of C&amp;hanges</source>
        <translation>Ä&amp;nderungsprotokoll</translation>
    </message>
    <message>
        <source>Log of Changes</source>
        <translation>Änderungsprotokoll</translation>
    </message>
    <message>
        <source>Log of changes</source>
        <translation>Änderungsprotokoll</translation>
    </message>
    <message>
        <source>Records every change of the rows that are selected in the table above.</source>
        <translation>Zeichnet jede Änderung der Zeilen auf, die oben in der Tabelle gewählt sind.</translation>
    </message>
    <message>
        <source>Records every change of the selected rows in the log of changes.</source>
        <translation>Zeichnet jede Änderung der gewählten Zeilen im Änderungsprotokoll auf.</translation>
    </message>
    <message>
        <source>Select rows of the table above and choose Log Changes.</source>
        <translation>Wählen Sie oben in der Tabelle Zeilen und dann „Änderungen mitschreiben“.</translation>
    </message>
    <message>
        <source>Writes the log to a file.</source>
        <translation>Schreibt das Protokoll in eine Datei.</translation>
    </message>
</context>
<context>
    <name>QlumChangedCertificateDialog</name>
    <message>
        <source>&amp;Examine the New Certificate...</source>
        <translation>Das neue Zertifikat &amp;prüfen...</translation>
    </message>
    <message>
        <source>&amp;Use the New Certificate</source>
        <translation>Das neue Zertifikat &amp;verwenden</translation>
    </message>
    <message>
        <source>Application URI</source>
        <translation>Anwendungs-URI</translation>
    </message>
    <message>
        <source>DNS names</source>
        <translation>DNS-Namen</translation>
    </message>
    <message>
        <source>IP addresses</source>
        <translation>IP-Adressen</translation>
    </message>
    <message>
        <source>Issuer&apos;s organization</source>
        <translation>Organisation des Ausstellers</translation>
    </message>
    <message>
        <source>Key bits</source>
        <translation>Schlüsselbits</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Presented now</source>
        <translation>Jetzt vorgelegt</translation>
    </message>
    <message>
        <source>Server &apos;%1&apos; at %2 presents another certificate than the one that was trusted for it. It may have been renewed, or somebody else answers in the server&apos;s place.</source>
        <translation>Der Server „%1“ unter %2 legt ein anderes Zertifikat vor als das, dem für ihn vertraut wurde. Vielleicht wurde es erneuert, vielleicht antwortet jemand anderes an seiner Stelle.</translation>
    </message>
    <message>
        <source>Signature</source>
        <translation>Signatur</translation>
    </message>
    <message>
        <source>The Server&apos;s Certificate Has Changed</source>
        <translation>Das Serverzertifikat hat sich geändert</translation>
    </message>
    <message>
        <source>The new certificate is not trusted yet: you are asked about it next.</source>
        <translation>Dem neuen Zertifikat wird noch nicht vertraut: Danach werden Sie als Nächstes gefragt.</translation>
    </message>
    <message>
        <source>The new certificate is trusted itself.</source>
        <translation>Dem neuen Zertifikat wird selbst vertraut.</translation>
    </message>
    <message>
        <source>Thumbprint (SHA1)</source>
        <translation>Fingerabdruck (SHA1)</translation>
    </message>
    <message>
        <source>Trusted so far</source>
        <translation>Bisher vertraut</translation>
    </message>
    <message>
        <source>Valid from</source>
        <translation>Gültig ab</translation>
    </message>
    <message>
        <source>Valid until</source>
        <translation>Gültig bis</translation>
    </message>
</context>
<context>
    <name>QlumColorListEditor</name>
    <message>
        <source>Blue</source>
        <translation>Blau</translation>
    </message>
    <message>
        <source>Colour of the curve</source>
        <translation>Farbe der Kurve</translation>
    </message>
    <message>
        <source>Cyan</source>
        <translation>Cyan</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Grün</translation>
    </message>
    <message>
        <source>Grey</source>
        <translation>Grau</translation>
    </message>
    <message>
        <source>Orange</source>
        <translation>Orange</translation>
    </message>
    <message>
        <source>Pink</source>
        <translation>Rosa</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rot</translation>
    </message>
    <message>
        <source>Violet</source>
        <translation>Violett</translation>
    </message>
</context>
<context>
    <name>QlumColumnChooser</name>
    <message>
        <source>&lt;b&gt;Columns&lt;/b&gt;&lt;br&gt;Chooses which columns are shown. Their order is changed by dragging titles.</source>
        <translation>&lt;b&gt;Spalten&lt;/b&gt;&lt;br&gt;Wählt, welche Spalten gezeigt werden. Ihre Reihenfolge ändern Sie durch Ziehen der Titel.</translation>
    </message>
    <message>
        <source>C&amp;olumns</source>
        <translation>S&amp;palten</translation>
    </message>
    <message>
        <source>Show &amp;All</source>
        <translation>&amp;Alle zeigen</translation>
    </message>
</context>
<context>
    <name>QlumCommandPalette</name>
    <message>
        <source>%1 found.</source>
        <translation>%1 gefunden.</translation>
    </message>
    <message>
        <source>%1 of %2 are shown.</source>
        <translation>%1 von %2 werden gezeigt.</translation>
    </message>
    <message>
        <source>A few letters of a command, server, setting, project or node</source>
        <translation>Ein paar Buchstaben eines Befehls, Servers, Projekts, Knotens oder einer Einstellung</translation>
    </message>
    <message>
        <source>Command Palette</source>
        <translation>Befehlspalette</translation>
    </message>
    <message>
        <source>Letters of what is looked for</source>
        <translation>Buchstaben des Gesuchten</translation>
    </message>
    <message>
        <source>Nothing has these letters in this order.</source>
        <translation>Nichts enthält diese Buchstaben in dieser Reihenfolge.</translation>
    </message>
    <message>
        <source>What was found</source>
        <translation>Was gefunden wurde</translation>
    </message>
</context>
<context>
    <name>QlumComparisonModel</name>
    <message>
        <source>(absent)</source>
        <translation>(nicht vorhanden)</translation>
    </message>
    <message>
        <source>Attribute</source>
        <translation>Attribut</translation>
    </message>
</context>
<context>
    <name>QlumComparisonWindow</name>
    <message>
        <source>%1 of %2 rows differ.</source>
        <translation>%1 von %2 Zeilen unterscheiden sich.</translation>
    </message>
    <message>
        <source>&amp;Differences only</source>
        <translation>Nur &amp;Unterschiede</translation>
    </message>
    <message>
        <source>Attributes of both nodes</source>
        <translation>Attribute beider Knoten</translation>
    </message>
    <message>
        <source>Compare Nodes</source>
        <translation>Knoten vergleichen</translation>
    </message>
    <message>
        <source>Differences only</source>
        <translation>Nur Unterschiede</translation>
    </message>
    <message>
        <source>Hides what is the same in both nodes</source>
        <translation>Blendet aus, was bei beiden Knoten gleich ist</translation>
    </message>
    <message>
        <source>The nodes do not differ.</source>
        <translation>Die Knoten unterscheiden sich nicht.</translation>
    </message>
</context>
<context>
    <name>QlumConditionCalls</name>
    <message>
        <source>Shelving an alarm</source>
        <translation>Alarm zurückstellen</translation>
    </message>
</context>
<context>
    <name>QlumConditionDialog</name>
    <message>
        <source>&amp;Respond</source>
        <translation>&amp;Antworten</translation>
    </message>
    <message>
        <source>Answering a condition</source>
        <translation>Eine Bedingung beantworten</translation>
    </message>
    <message>
        <source>Call failed with error %1</source>
        <translation>Aufruf mit Fehler %1 fehlgeschlagen</translation>
    </message>
    <message>
        <source>Call succeeded</source>
        <translation>Aufruf erfolgreich</translation>
    </message>
    <message>
        <source>Calling &apos;Respond&apos; with response #%1 (%2)</source>
        <translation>„Respond“ wird mit Antwort Nr. %1 (%2) aufgerufen</translation>
    </message>
    <message>
        <source>Condition Dialog - %1 - %2</source>
        <translation>Dialog der Bedingung - %1 - %2</translation>
    </message>
    <message>
        <source>Event Plugin</source>
        <translation>Plugin Ereignisse</translation>
    </message>
    <message>
        <source>Responses</source>
        <translation>Antworten</translation>
    </message>
    <message>
        <source>Send the chosen answer to the server</source>
        <translation>Die gewählte Antwort an den Server senden</translation>
    </message>
    <message>
        <source>The answer was not taken.</source>
        <translation>Die Antwort wurde nicht angenommen.</translation>
    </message>
</context>
<context>
    <name>QlumConditionWords</name>
    <message>
        <source>The alarm is not shelved.</source>
        <translation>Der Alarm ist nicht zurückgestellt.</translation>
    </message>
    <message>
        <source>The alarm is shelved already.</source>
        <translation>Der Alarm ist bereits zurückgestellt.</translation>
    </message>
    <message>
        <source>The condition does not have this method.</source>
        <translation>Die Bedingung hat diese Methode nicht.</translation>
    </message>
    <message>
        <source>The condition does not wait for an answer any more.</source>
        <translation>Die Bedingung wartet nicht mehr auf eine Antwort.</translation>
    </message>
    <message>
        <source>The condition is disabled already.</source>
        <translation>Die Bedingung ist bereits deaktiviert.</translation>
    </message>
    <message>
        <source>The condition is disabled.</source>
        <translation>Die Bedingung ist deaktiviert.</translation>
    </message>
    <message>
        <source>The condition is enabled already.</source>
        <translation>Die Bedingung ist bereits aktiviert.</translation>
    </message>
    <message>
        <source>The server does not know the condition any more.</source>
        <translation>Der Server kennt die Bedingung nicht mehr.</translation>
    </message>
    <message>
        <source>The server does not know this event any more: the state has changed since. Look at the alarm again, or have the conditions refreshed.</source>
        <translation>Der Server kennt dieses Ereignis nicht mehr: Der Zustand hat sich seither geändert. Sehen Sie den Alarm noch einmal an, oder lassen Sie die Bedingungen auffrischen.</translation>
    </message>
    <message>
        <source>The server does not shelve alarms for so long.</source>
        <translation>So lange stellt der Server Alarme nicht zurück.</translation>
    </message>
    <message>
        <source>The user of this connection has no right to do that.</source>
        <translation>Der Benutzer dieser Verbindung hat dazu kein Recht.</translation>
    </message>
    <message>
        <source>This alarm has been acknowledged already, perhaps by somebody else.</source>
        <translation>Dieser Alarm wurde bereits quittiert, vielleicht von jemand anderem.</translation>
    </message>
    <message>
        <source>This alarm has been confirmed already, perhaps by somebody else.</source>
        <translation>Dieser Alarm wurde bereits bestätigt, vielleicht von jemand anderem.</translation>
    </message>
</context>
<context>
    <name>QlumConnectDialogs</name>
    <message>
        <source>&amp;Diagnose...</source>
        <translation>&amp;Diagnose...</translation>
    </message>
    <message>
        <source>&amp;Try Again</source>
        <translation>&amp;Erneut versuchen</translation>
    </message>
    <message>
        <source>Changing the User Failed</source>
        <translation>Benutzerwechsel fehlgeschlagen</translation>
    </message>
    <message>
        <source>Connect &amp;Anew</source>
        <translation>&amp;Neu verbinden</translation>
    </message>
    <message>
        <source>Connect Error</source>
        <translation>Verbindungsfehler</translation>
    </message>
    <message>
        <source>Connect anew to be asked about the error again.</source>
        <translation>Verbinden Sie neu, um nach dem Fehler erneut gefragt zu werden.</translation>
    </message>
    <message>
        <source>Connecting Failed</source>
        <translation>Verbinden fehlgeschlagen</translation>
    </message>
    <message>
        <source>Error &apos;%1&apos; was returned during %2, press &apos;Ignore&apos; to suppress the error and continue connecting.</source>
        <translation>Bei %2 wurde der Fehler „%1“ gemeldet; mit „Ignorieren“ unterdrücken Sie ihn und verbinden weiter.</translation>
    </message>
    <message>
        <source>Error &apos;%1&apos; was returned during %2.
The server did not wait any longer.</source>
        <translation>Bei %2 wurde der Fehler „%1“ gemeldet.
Der Server hat nicht länger gewartet.</translation>
    </message>
    <message>
        <source>Host Not Found</source>
        <translation>Host nicht gefunden</translation>
    </message>
    <message>
        <source>Server &apos;%1&apos; at %2 was not connected.
%3</source>
        <translation>Der Server „%1“ unter %2 wurde nicht verbunden.
%3</translation>
    </message>
    <message>
        <source>Server &apos;%1&apos; says that it is at &apos;%2&apos;, a host that cannot be found from here.
Do you want to keep to &apos;%3&apos;, where it has answered, now and in future?</source>
        <translation>Der Server „%1“ nennt als seinen Ort „%2“, einen Host, der von hier aus nicht zu finden ist.
Möchten Sie jetzt und künftig bei „%3“ bleiben, wo er geantwortet hat?</translation>
    </message>
    <message>
        <source>The certificate of host &apos;%1&apos; cannot be checked: whoever answers in its place can read the password.</source>
        <translation>Das Zertifikat des Hosts „%1“ lässt sich nicht prüfen: Wer an seiner Stelle antwortet, kann das Kennwort lesen.</translation>
    </message>
    <message>
        <source>The connection cannot be established, because the server does not support the configured security policy.
Please try another configuration or press &apos;Ignore&apos; to force trying to connect.</source>
        <translation>Die Verbindung kann nicht hergestellt werden, weil der Server die eingestellte Sicherheitsrichtlinie nicht unterstützt.
Versuchen Sie eine andere Einstellung, oder erzwingen Sie den Versuch mit „Ignorieren“.</translation>
    </message>
    <message>
        <source>The password leaves this computer in clear text, for host &apos;%1&apos;: everybody on the way can read it.</source>
        <translation>Das Kennwort verlässt diesen Rechner im Klartext, für Host „%1“: Jeder auf dem Weg kann es lesen.</translation>
    </message>
    <message>
        <source>The security policy &apos;Basic128Rsa15&apos; of server &apos;%1&apos; is broken: who records the traffic can find out what was encrypted. Use it only when the server offers nothing better.
Do you want to use it for this server until Tavelin is closed?</source>
        <translation>Die Sicherheitsrichtlinie „Basic128Rsa15“ des Servers „%1“ ist gebrochen: Wer den Verkehr aufzeichnet, kann das Verschlüsselte herausfinden. Verwenden Sie sie nur, wenn der Server nichts Besseres anbietet.
Möchten Sie sie für diesen Server verwenden, bis Tavelin beendet wird?</translation>
    </message>
    <message>
        <source>The session with server &apos;%1&apos; goes on with the user that it had.
%2</source>
        <translation>Die Sitzung mit dem Server „%1“ geht mit dem bisherigen Benutzer weiter.
%2</translation>
    </message>
    <message>
        <source>There was no exact match for the specified URL in the server&apos;s endpoints, using the first server certificate found for connecting.</source>
        <translation>Die angegebene URL passt zu keinem Endpunkt des Servers genau; zum Verbinden wird das erste gefundene Serverzertifikat verwendet.</translation>
    </message>
    <message>
        <source>Try the connection step by step, to see where it stops</source>
        <translation>Die Verbindung Schritt für Schritt versuchen, um zu sehen, wo sie scheitert</translation>
    </message>
    <message>
        <source>URL not found</source>
        <translation>URL nicht gefunden</translation>
    </message>
    <message>
        <source>Unsafe Security Policy</source>
        <translation>Unsichere Sicherheitsrichtlinie</translation>
    </message>
    <message>
        <source>Unsupported Security Policy</source>
        <translation>Nicht unterstützte Sicherheitsrichtlinie</translation>
    </message>
</context>
<context>
    <name>QlumConnectFailure</name>
    <message>
        <source>A certificate is not trusted</source>
        <translation>Einem Zertifikat wird nicht vertraut</translation>
    </message>
    <message>
        <source>A certificate is not valid today</source>
        <translation>Ein Zertifikat ist heute nicht gültig</translation>
    </message>
    <message>
        <source>Check the URL, the network and the firewall, and whether the server runs.</source>
        <translation>Prüfen Sie URL, Netz und Firewall und ob der Server läuft.</translation>
    </message>
    <message>
        <source>Check user name and password, or log in as another user.</source>
        <translation>Prüfen Sie Benutzernamen und Kennwort, oder melden Sie sich als anderer Benutzer an.</translation>
    </message>
    <message>
        <source>Choose another identity in the properties of the server, or another endpoint.</source>
        <translation>Wählen Sie in den Eigenschaften des Servers eine andere Identität oder einen anderen Endpunkt.</translation>
    </message>
    <message>
        <source>Close sessions of other clients, or try again after a while.</source>
        <translation>Schließen Sie Sitzungen anderer Clients, oder versuchen Sie es nach einer Weile erneut.</translation>
    </message>
    <message>
        <source>Compare the server&apos;s certificate with what its administrator says.</source>
        <translation>Vergleichen Sie das Serverzertifikat mit dem, was sein Administrator sagt.</translation>
    </message>
    <message>
        <source>Nobody takes connections at this address</source>
        <translation>Niemand nimmt unter dieser Adresse Verbindungen an</translation>
    </message>
    <message>
        <source>Read the endpoints again in the properties of the server and choose another one.</source>
        <translation>Lesen Sie in den Eigenschaften des Servers die Endpunkte neu und wählen Sie einen anderen.</translation>
    </message>
    <message>
        <source>The certificate belongs to another host</source>
        <translation>Das Zertifikat gehört zu einem anderen Host</translation>
    </message>
    <message>
        <source>The connection could not be made</source>
        <translation>Die Verbindung konnte nicht hergestellt werden</translation>
    </message>
    <message>
        <source>The connection was closed</source>
        <translation>Die Verbindung wurde geschlossen</translation>
    </message>
    <message>
        <source>The host cannot be found or reached</source>
        <translation>Der Host ist nicht zu finden oder nicht erreichbar</translation>
    </message>
    <message>
        <source>The log window says in which step it has failed.</source>
        <translation>Das Protokollfenster zeigt, in welchem Schritt es gescheitert ist.</translation>
    </message>
    <message>
        <source>The private key does not fit the user&apos;s certificate</source>
        <translation>Der private Schlüssel passt nicht zum Zertifikat des Benutzers</translation>
    </message>
    <message>
        <source>The security checks have failed</source>
        <translation>Die Sicherheitsprüfungen sind fehlgeschlagen</translation>
    </message>
    <message>
        <source>The security mode is not accepted</source>
        <translation>Der Sicherheitsmodus wird nicht angenommen</translation>
    </message>
    <message>
        <source>The security policy is not accepted</source>
        <translation>Die Sicherheitsrichtlinie wird nicht angenommen</translation>
    </message>
    <message>
        <source>The server did not answer in time</source>
        <translation>Der Server hat nicht rechtzeitig geantwortet</translation>
    </message>
    <message>
        <source>The server does not accept the log-in</source>
        <translation>Der Server nimmt die Anmeldung nicht an</translation>
    </message>
    <message>
        <source>The server does not know the URL</source>
        <translation>Der Server kennt die URL nicht</translation>
    </message>
    <message>
        <source>The server does not let this user in</source>
        <translation>Der Server lässt diesen Benutzer nicht ein</translation>
    </message>
    <message>
        <source>The server does not take this kind of log-in</source>
        <translation>Der Server nimmt diese Art der Anmeldung nicht an</translation>
    </message>
    <message>
        <source>The server has no session left</source>
        <translation>Der Server hat keine Sitzung mehr frei</translation>
    </message>
    <message>
        <source>The server is too busy</source>
        <translation>Der Server ist überlastet</translation>
    </message>
    <message>
        <source>The server&apos;s administrator has to trust this program&apos;s certificate, or choose another endpoint.</source>
        <translation>Der Administrator des Servers muss dem Zertifikat dieses Programms vertrauen, oder wählen Sie einen anderen Endpunkt.</translation>
    </message>
</context>
<context>
    <name>QlumConnectFlow</name>
    <message>
        <source>Aborting changing user of current session</source>
        <translation>Der Benutzerwechsel der laufenden Sitzung wird abgebrochen</translation>
    </message>
    <message>
        <source>Aborting connection attempt</source>
        <translation>Der Verbindungsversuch wird abgebrochen</translation>
    </message>
    <message>
        <source>ApplicationUri: &apos;%1&apos;</source>
        <translation>ApplicationUri: „%1“</translation>
    </message>
    <message>
        <source>Certificate of the server: %1</source>
        <translation>Zertifikat des Servers: %1</translation>
    </message>
    <message>
        <source>ChangeUser failed with error &apos;%1&apos;</source>
        <translation>ChangeUser ist mit dem Fehler „%1“ fehlgeschlagen</translation>
    </message>
    <message>
        <source>ChangeUser succeeded.</source>
        <translation>ChangeUser war erfolgreich.</translation>
    </message>
    <message>
        <source>ChangeUser with UserTokenType: %1</source>
        <translation>ChangeUser mit UserTokenType: %1</translation>
    </message>
    <message>
        <source>Check the files of the identity in the properties of the server.</source>
        <translation>Prüfen Sie die Dateien der Identität in den Eigenschaften des Servers.</translation>
    </message>
    <message>
        <source>Connecting cancelled by user.</source>
        <translation>Das Verbinden wurde vom Benutzer abgebrochen.</translation>
    </message>
    <message>
        <source>Connecting failed with error &apos;%1&apos;</source>
        <translation>Verbinden ist mit dem Fehler „%1“ fehlgeschlagen</translation>
    </message>
    <message>
        <source>Could not connect to server: </source>
        <translation>Verbindung zum Server nicht möglich: </translation>
    </message>
    <message>
        <source>Could not load certificate for X509 user token from file &apos;%1&apos;</source>
        <translation>Das Zertifikat für das X509-Benutzertoken konnte nicht aus der Datei „%1“ geladen werden</translation>
    </message>
    <message>
        <source>Could not load private key for X509 user token from file &apos;%1&apos;</source>
        <translation>Der private Schlüssel für das X509-Benutzertoken konnte nicht aus der Datei „%1“ geladen werden</translation>
    </message>
    <message>
        <source>Endpoint: &apos;%1&apos;</source>
        <translation>Endpunkt: „%1“</translation>
    </message>
    <message>
        <source>Error &apos;%1&apos; was returned during %2</source>
        <translation>Bei %2 wurde der Fehler „%1“ gemeldet</translation>
    </message>
    <message>
        <source>Korvanda Tavelin</source>
        <translation>Korvanda Tavelin</translation>
    </message>
    <message>
        <source>Revised values: SessionTimeout=%1, SecureChannelLifetime=%2</source>
        <translation>Gewährte Werte: SessionTimeout=%1, SecureChannelLifetime=%2</translation>
    </message>
    <message>
        <source>Security policy: &apos;%1&apos;</source>
        <translation>Sicherheitsrichtlinie: „%1“</translation>
    </message>
    <message>
        <source>Successfully connected UA server.</source>
        <translation>UA-Server erfolgreich verbunden.</translation>
    </message>
    <message>
        <source>The connection is not secured, the server&apos;s certificate is not checked.</source>
        <translation>Die Verbindung ist nicht gesichert, das Serverzertifikat wird nicht geprüft.</translation>
    </message>
    <message>
        <source>The server calls its host &apos;%1&apos;; &apos;%2&apos;, where it has answered, is kept to.</source>
        <translation>Der Server nennt seinen Host „%1“; es bleibt bei „%2“, wo er geantwortet hat.</translation>
    </message>
    <message>
        <source>The server does not list its endpoints (%1). What was set by hand is used.</source>
        <translation>Der Server listet seine Endpunkte nicht auf (%1). Verwendet wird, was von Hand eingestellt ist.</translation>
    </message>
    <message>
        <source>The server does not support the configured security policy &apos;%1&apos;.</source>
        <translation>Der Server unterstützt die eingestellte Sicherheitsrichtlinie „%1“ nicht.</translation>
    </message>
    <message>
        <source>The server does not support the security mode &apos;%1&apos;.</source>
        <translation>Der Server unterstützt den Sicherheitsmodus „%1“ nicht.</translation>
    </message>
    <message>
        <source>The server returned no certificate, all certificate checks will be skipped.</source>
        <translation>Der Server hat kein Zertifikat geliefert, alle Zertifikatsprüfungen entfallen.</translation>
    </message>
    <message>
        <source>The server&apos;s certificate is not the one that was trusted for it.</source>
        <translation>Das Serverzertifikat ist nicht das, dem für ihn vertraut wurde.</translation>
    </message>
    <message>
        <source>The unsafe security policy &apos;Basic128Rsa15&apos; is used.</source>
        <translation>Die unsichere Sicherheitsrichtlinie „Basic128Rsa15“ wird verwendet.</translation>
    </message>
    <message>
        <source>The user has accepted the server&apos;s certificate for this session.</source>
        <translation>Der Benutzer hat das Serverzertifikat für diese Sitzung angenommen.</translation>
    </message>
    <message>
        <source>The user&apos;s certificate or its private key could not be read.</source>
        <translation>Das Zertifikat des Benutzers oder sein privater Schlüssel konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Try connect using SecurityPolicy &apos;%1&apos;, MessageSecurityMode &apos;%2&apos;</source>
        <translation>Verbindungsversuch mit SecurityPolicy „%1“, MessageSecurityMode „%2“</translation>
    </message>
    <message>
        <source>Used UserTokenType: %1</source>
        <translation>Verwendeter UserTokenType: %1</translation>
    </message>
    <message>
        <source>urn:Korvanda:Tavelin</source>
        <translation>urn:Korvanda:Tavelin</translation>
    </message>
</context>
<context>
    <name>QlumConnectProgress</name>
    <message>
        <source>Asking the server for its endpoints</source>
        <translation>Den Server nach seinen Endpunkten fragen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Cancelling</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Changing the user of the session</source>
        <translation>Den Benutzer der Sitzung wechseln</translation>
    </message>
    <message>
        <source>Checking the security policy</source>
        <translation>Die Sicherheitsrichtlinie prüfen</translation>
    </message>
    <message>
        <source>Checking the server&apos;s certificate</source>
        <translation>Das Serverzertifikat prüfen</translation>
    </message>
    <message>
        <source>Choosing an endpoint</source>
        <translation>Einen Endpunkt wählen</translation>
    </message>
    <message>
        <source>Connecting</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Connecting to &apos;%1&apos;...</source>
        <translation>Verbindung mit „%1“...</translation>
    </message>
    <message>
        <source>Finding out who is to log in</source>
        <translation>Feststellen, wer sich anmeldet</translation>
    </message>
    <message>
        <source>Looking for the server&apos;s host</source>
        <translation>Den Host des Servers suchen</translation>
    </message>
    <message>
        <source>Opening the session</source>
        <translation>Die Sitzung öffnen</translation>
    </message>
</context>
<context>
    <name>QlumConnectionTest</name>
    <message>
        <source>%1 is %2. It keeps the session for %3 s without a connection.</source>
        <translation>%1: %2. Ohne Verbindung bewahrt er die Sitzung %3 s lang auf.</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>Connected in %1 ms (%2).</source>
        <translation>In %1 ms verbunden (%2).</translation>
    </message>
    <message>
        <source>Looking at the server&apos;s state</source>
        <translation>Den Zustand des Servers ansehen</translation>
    </message>
    <message>
        <source>Testing the connection to %1</source>
        <translation>Verbindung mit %1 prüfen</translation>
    </message>
    <message>
        <source>The server</source>
        <translation>Der Server</translation>
    </message>
    <message>
        <source>The server&apos;s state cannot be read: %1.</source>
        <translation>Der Zustand des Servers kann nicht gelesen werden: %1.</translation>
    </message>
    <message>
        <source>The test has failed.</source>
        <translation>Die Prüfung ist fehlgeschlagen.</translation>
    </message>
    <message>
        <source>The test has failed: %1</source>
        <translation>Die Prüfung ist fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>The test was cancelled.</source>
        <translation>Die Prüfung wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Waiting for your answer</source>
        <translation>Warten auf Ihre Antwort</translation>
    </message>
    <message>
        <source>anonymously</source>
        <translation>anonym</translation>
    </message>
    <message>
        <source>as user &apos;%1&apos;</source>
        <translation>als Benutzer „%1“</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>ausgefallen</translation>
    </message>
    <message>
        <source>in a communication fault</source>
        <translation>Kommunikationsstörung</translation>
    </message>
    <message>
        <source>in an unknown state</source>
        <translation>Zustand unbekannt</translation>
    </message>
    <message>
        <source>in test</source>
        <translation>im Test</translation>
    </message>
    <message>
        <source>not configured</source>
        <translation>nicht konfiguriert</translation>
    </message>
    <message>
        <source>running</source>
        <translation>läuft</translation>
    </message>
    <message>
        <source>shut down</source>
        <translation>heruntergefahren</translation>
    </message>
    <message>
        <source>suspended</source>
        <translation>angehalten</translation>
    </message>
    <message>
        <source>with a user certificate</source>
        <translation>mit einem Benutzerzertifikat</translation>
    </message>
</context>
<context>
    <name>QlumCopy</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy Cell&lt;/b&gt;&lt;br&gt;Puts the text of the current cell on the clipboard.</source>
        <translation>&lt;b&gt;Zelle kopieren&lt;/b&gt;&lt;br&gt;Legt den Text der aktuellen Zelle in die Zwischenablage.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy Row&lt;/b&gt;&lt;br&gt;Puts the current row on the clipboard, a tab between the columns.</source>
        <translation>&lt;b&gt;Zeile kopieren&lt;/b&gt;&lt;br&gt;Legt die aktuelle Zeile in die Zwischenablage, zwischen den Spalten ein Tabulator.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy with Titles&lt;/b&gt;&lt;br&gt;As Copy, with a first line that names the columns.</source>
        <translation>&lt;b&gt;Mit Titeln kopieren&lt;/b&gt;&lt;br&gt;Wie Kopieren, mit einer ersten Zeile, die die Spalten nennt.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy&lt;/b&gt;&lt;br&gt;Puts the text of the selected rows on the clipboard, one line for each row and a tab between the columns.</source>
        <translation>&lt;b&gt;Kopieren&lt;/b&gt;&lt;br&gt;Legt den Text der gewählten Zeilen in die Zwischenablage, eine Zeile je Zeile und ein Tabulator zwischen den Spalten.</translation>
    </message>
    <message>
        <source>Copy &amp;Row</source>
        <translation>&amp;Zeile kopieren</translation>
    </message>
    <message>
        <source>Copy C&amp;ell</source>
        <translation>Z&amp;elle kopieren</translation>
    </message>
    <message>
        <source>Copy the current row</source>
        <translation>Die aktuelle Zeile kopieren</translation>
    </message>
    <message>
        <source>Copy the selected rows</source>
        <translation>Die gewählten Zeilen kopieren</translation>
    </message>
    <message>
        <source>Copy the selected rows with the titles of their columns</source>
        <translation>Die gewählten Zeilen mit den Titeln ihrer Spalten kopieren</translation>
    </message>
    <message>
        <source>Copy the text of the cell</source>
        <translation>Den Text der Zelle kopieren</translation>
    </message>
    <message>
        <source>Copy with &amp;Titles</source>
        <translation>Mit &amp;Titeln kopieren</translation>
    </message>
</context>
<context>
    <name>QlumCopyPart</name>
    <message>
        <source>&amp;Copy As</source>
        <translation>&amp;Kopieren als</translation>
    </message>
</context>
<context>
    <name>QlumCrawl</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>The server does not come to an end of its nodes, or has more than can be kept; the rest was not looked at.</source>
        <translation>Der Server kommt mit seinen Knoten an kein Ende oder hat mehr, als behalten werden können; der Rest wurde nicht angesehen.</translation>
    </message>
</context>
<context>
    <name>QlumCsvExport</name>
    <message>
        <source>The rows were put into another order while they were written.</source>
        <translation>Die Zeilen wurden umsortiert, während sie geschrieben wurden.</translation>
    </message>
    <message>
        <source>The view was closed while its rows were written.</source>
        <translation>Die Ansicht wurde geschlossen, während ihre Zeilen geschrieben wurden.</translation>
    </message>
</context>
<context>
    <name>QlumCsvReader</name>
    <message>
        <source>This is no text: it holds bytes that no text has.</source>
        <translation>Das ist kein Text: Es enthält Bytes, die kein Text hat.</translation>
    </message>
    <message>
        <source>This is not UTF-8; it was read as Latin-1, so look at accented letters.</source>
        <translation>Das ist kein UTF-8; es wurde als Latin-1 gelesen, sehen Sie also auf Buchstaben mit Akzent.</translation>
    </message>
</context>
<context>
    <name>QlumCurveValuesModel</name>
    <message>
        <source>Server Timestamp</source>
        <translation>Serverzeitstempel</translation>
    </message>
    <message>
        <source>Source Timestamp</source>
        <translation>Quellzeitstempel</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
</context>
<context>
    <name>QlumCustomNodeIdDialog</name>
    <message>
        <source>&amp;Node id:</source>
        <translation>&amp;NodeId:</translation>
    </message>
    <message>
        <source>&amp;Server:</source>
        <translation>&amp;Server:</translation>
    </message>
    <message>
        <source>&lt;b&gt;Node id&lt;/b&gt;&lt;br&gt;Namespace index and identifier: i=2253, ns=2;s=Boiler1, ns=3;g=72962b91-fa75-4ae6-8d28-b404dc7daf63 or ns=4;b=AQID.</source>
        <translation>&lt;b&gt;NodeId&lt;/b&gt;&lt;br&gt;Namensraumindex und Bezeichner: i=2253, ns=2;s=Boiler1, ns=3;g=72962b91-fa75-4ae6-8d28-b404dc7daf63 oder ns=4;b=AQID.</translation>
    </message>
    <message>
        <source>Node id</source>
        <translation>NodeId</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Set Custom NodeId</source>
        <translation>Eigene NodeId angeben</translation>
    </message>
    <message>
        <source>There is no server in the project.</source>
        <translation>Im Projekt ist kein Server.</translation>
    </message>
    <message>
        <source>This is no node id. Examples: i=2253, ns=2;s=Boiler1</source>
        <translation>Das ist keine NodeId. Beispiele: i=2253, ns=2;s=Boiler1</translation>
    </message>
</context>
<context>
    <name>QlumDaFilter</name>
    <message numerus="yes">
        <source>%1 (%n row(s))</source>
        <translation>
            <numerusform>%1 (%n Zeile)</numerusform>
            <numerusform>%1 (%n Zeilen)</numerusform>
        </translation>
    </message>
    <message>
        <source>Not known yet</source>
        <translation>Noch nicht bekannt</translation>
    </message>
</context>
<context>
    <name>QlumDaModel</name>
    <message>
        <source>#</source>
        <translation>#</translation>
    </message>
    <message>
        <source>%1 (asked %2)</source>
        <translation>%1 (verlangt %2)</translation>
    </message>
    <message>
        <source>%1 d %2 h</source>
        <translation>%1 d %2 h</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 h %2 min</translation>
    </message>
    <message>
        <source>%1 min %2 s</source>
        <translation>%1 min %2 s</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>%1, read every %2</source>
        <translation>%1, gelesen alle %2</translation>
    </message>
    <message>
        <source>(no such field)</source>
        <translation>(kein solches Feld)</translation>
    </message>
    <message>
        <source>Age</source>
        <translation>Alter</translation>
    </message>
    <message>
        <source>Browse Path</source>
        <translation>Pfad</translation>
    </message>
    <message>
        <source>Changes</source>
        <translation>Änderungen</translation>
    </message>
    <message>
        <source>Complete?</source>
        <translation>Vollständig?</translation>
    </message>
    <message>
        <source>Data Type</source>
        <translation>Datentyp</translation>
    </message>
    <message>
        <source>Display Name</source>
        <translation>Anzeigename</translation>
    </message>
    <message>
        <source>Its server is not in the project</source>
        <translation>Sein Server ist nicht im Projekt</translation>
    </message>
    <message>
        <source>Maximum</source>
        <translation>Maximum</translation>
    </message>
    <message>
        <source>Minimum</source>
        <translation>Minimum</translation>
    </message>
    <message>
        <source>Namespace: %1</source>
        <translation>Namensraum: %1</translation>
    </message>
    <message>
        <source>New Value</source>
        <translation>Neuer Wert</translation>
    </message>
    <message>
        <source>No value yet</source>
        <translation>Noch kein Wert</translation>
    </message>
    <message>
        <source>Node Id</source>
        <translation>NodeId</translation>
    </message>
    <message>
        <source>Not written: %1</source>
        <translation>Nicht geschrieben: %1</translation>
    </message>
    <message>
        <source>Offline</source>
        <translation>Offline</translation>
    </message>
    <message>
        <source>Offline since %1</source>
        <translation>Offline seit %1</translation>
    </message>
    <message>
        <source>Offline; its namespace &quot;%1&quot; is not known yet</source>
        <translation>Offline; sein Namensraum „%1“ ist noch nicht bekannt</translation>
    </message>
    <message>
        <source>Queue</source>
        <translation>Warteschlange</translation>
    </message>
    <message>
        <source>Received</source>
        <translation>Empfangen</translation>
    </message>
    <message>
        <source>Refused: %1</source>
        <translation>Abgelehnt: %1</translation>
    </message>
    <message>
        <source>Sampling Asked</source>
        <translation>Abtastung verlangt</translation>
    </message>
    <message>
        <source>Sampling Revised</source>
        <translation>Abtastung gewährt</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Server Time</source>
        <translation>Serverzeit</translation>
    </message>
    <message>
        <source>Source Time</source>
        <translation>Quellzeit</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>The server has no namespace &quot;%1&quot; now</source>
        <translation>Der Server hat jetzt keinen Namensraum „%1“</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Waiting for its turn</source>
        <translation>Wartet, bis er an der Reihe ist</translation>
    </message>
    <message>
        <source>What the server has made of the sampling interval that was asked for.</source>
        <translation>Was der Server aus dem verlangten Abtastintervall gemacht hat.</translation>
    </message>
    <message>
        <source>created again at %1 in a new session</source>
        <translation>um %1 in einer neuen Sitzung neu angelegt</translation>
    </message>
    <message>
        <source>never interrupted</source>
        <translation>nie unterbrochen</translation>
    </message>
    <message>
        <source>resumed at %1: the server had kept it</source>
        <translation>um %1 fortgesetzt: Der Server hatte sie behalten</translation>
    </message>
</context>
<context>
    <name>QlumDaPlot</name>
    <message>
        <source>%1 h</source>
        <translation>%1 h</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 values came too fast to be drawn</source>
        <translation>%1 Werte kamen zu schnell, um gezeichnet zu werden</translation>
    </message>
    <message>
        <source>&amp;Go On</source>
        <translation>&amp;Weiter</translation>
    </message>
    <message>
        <source>&amp;Pause</source>
        <translation>&amp;Pause</translation>
    </message>
    <message>
        <source>An a&amp;xis for each curve</source>
        <translation>Eine A&amp;chse für jede Kurve</translation>
    </message>
    <message>
        <source>Else curves of one unit share an axis.</source>
        <translation>Sonst teilen sich Kurven gleicher Einheit eine Achse.</translation>
    </message>
    <message>
        <source>Holds the picture still; values are collected on.</source>
        <translation>Hält das Bild an; Werte werden weiter gesammelt.</translation>
    </message>
    <message>
        <source>How much time the plot shows while it follows the newest values.</source>
        <translation>Wie viel Zeit der Plot zeigt, während er den neuesten Werten folgt.</translation>
    </message>
    <message>
        <source>No curves yet</source>
        <translation>Noch keine Kurven</translation>
    </message>
    <message>
        <source>Select rows of the table and choose &quot;Plot&quot; in their menu.</source>
        <translation>Wählen Sie Zeilen der Tabelle und in deren Menü „Plotten“.</translation>
    </message>
    <message>
        <source>Time that is shown</source>
        <translation>Gezeigte Zeit</translation>
    </message>
</context>
<context>
    <name>QlumDaPlugin</name>
    <message>
        <source>&amp;Copy As</source>
        <translation>&amp;Kopieren als</translation>
    </message>
    <message>
        <source>Watches the values of variables of one or more servers and writes them.</source>
        <translation>Überwacht die Werte von Variablen eines oder mehrerer Server und schreibt sie.</translation>
    </message>
</context>
<context>
    <name>QlumDaSettings</name>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>&amp;Changes in a log:</source>
        <translation>Ä&amp;nderungen in einem Protokoll:</translation>
    </message>
    <message>
        <source>&amp;Data Access</source>
        <translation>&amp;Datenzugriff</translation>
    </message>
    <message>
        <source>&amp;Lifetime:</source>
        <translation>&amp;Lebensdauer:</translation>
    </message>
    <message>
        <source>&amp;Publishing interval:</source>
        <translation>&amp;Sendeintervall:</translation>
    </message>
    <message>
        <source>&amp;Queue size:</source>
        <translation>&amp;Warteschlange:</translation>
    </message>
    <message>
        <source>&amp;Sampling interval:</source>
        <translation>&amp;Abtastintervall:</translation>
    </message>
    <message>
        <source>&amp;Trigger:</source>
        <translation>A&amp;uslöser:</translation>
    </message>
    <message>
        <source>After so many publishing intervals without a connection a server forgets what is watched.</source>
        <translation>Nach so vielen Sendeintervallen ohne Verbindung vergisst ein Server, was überwacht wird.</translation>
    </message>
    <message>
        <source>Ask for &amp;units</source>
        <translation>Nach &amp;Einheiten fragen</translation>
    </message>
    <message>
        <source>Changes that are smaller are not reported: absolute in the unit of the value, or in percent of the range that the variable says it has.</source>
        <translation>Kleinere Änderungen werden nicht gemeldet: absolut in der Einheit des Werts, oder in Prozent des Bereichs, den die Variable angibt.</translation>
    </message>
    <message>
        <source>Dead&amp;band:</source>
        <translation>Tot&amp;band:</translation>
    </message>
    <message>
        <source>Deadband &amp;value:</source>
        <translation>Wert des &amp;Totbands:</translation>
    </message>
    <message>
        <source>Discard the &amp;oldest value when the queue is full</source>
        <translation>Den älte&amp;sten Wert verwerfen, wenn die Warteschlange voll ist</translation>
    </message>
    <message>
        <source>Else the newest one is replaced.</source>
        <translation>Sonst wird der neueste ersetzt.</translation>
    </message>
    <message>
        <source>How many changes the log of a view keeps; the oldest go. For views that are opened from now on.</source>
        <translation>Wie viele Änderungen das Protokoll einer Ansicht behält; die ältesten fallen weg. Für Ansichten, die ab jetzt geöffnet werden.</translation>
    </message>
    <message>
        <source>How many values of a variable a server keeps until it sends them.</source>
        <translation>Wie viele Werte einer Variablen ein Server aufbewahrt, bis er sie sendet.</translation>
    </message>
    <message>
        <source>How often a server looks at a value. With -1 as often as it sends, with 0 as often as it can.</source>
        <translation>Wie oft ein Server nach einem Wert sieht. Bei -1 so oft, wie er sendet, bei 0 so oft er kann.</translation>
    </message>
    <message>
        <source>How often a server sends what has changed.</source>
        <translation>Wie oft ein Server sendet, was sich geändert hat.</translation>
    </message>
    <message>
        <source>In the unit of the value, or in percent.</source>
        <translation>In der Einheit des Werts oder in Prozent.</translation>
    </message>
    <message>
        <source>Most variables of a bra&amp;nch:</source>
        <translation>Höchstzahl Variablen eines &amp;Zweigs:</translation>
    </message>
    <message>
        <source>Of two subscriptions the higher one is sent first.</source>
        <translation>Von zwei Subscriptions wird die höhere zuerst gesendet.</translation>
    </message>
    <message>
        <source>P&amp;riority:</source>
        <translation>P&amp;riorität:</translation>
    </message>
    <message>
        <source>Reads the engineering unit of each variable, which takes a few more calls.</source>
        <translation>Liest die technische Einheit jeder Variablen; das kostet ein paar Aufrufe mehr.</translation>
    </message>
    <message>
        <source>Ti&amp;mes:</source>
        <translation>Zei&amp;ten:</translation>
    </message>
    <message>
        <source>What counts as a change.</source>
        <translation>Was als Änderung gilt.</translation>
    </message>
    <message>
        <source>What new data access views begin with:</source>
        <translation>Womit neue Datenzugriffsansichten beginnen:</translation>
    </message>
    <message>
        <source>Where looking for variables below a node ends.</source>
        <translation>Wo die Suche nach Variablen unter einem Knoten endet.</translation>
    </message>
    <message>
        <source>Which times come with a value.</source>
        <translation>Welche Zeiten mit einem Wert kommen.</translation>
    </message>
</context>
<context>
    <name>QlumDaSettingsDialog</name>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>&amp;Index range:</source>
        <translation>&amp;Indexbereich:</translation>
    </message>
    <message>
        <source>&amp;Lifetime:</source>
        <translation>&amp;Lebensdauer:</translation>
    </message>
    <message>
        <source>&amp;Publishing interval:</source>
        <translation>&amp;Sendeintervall:</translation>
    </message>
    <message>
        <source>&amp;Queue size:</source>
        <translation>&amp;Warteschlange:</translation>
    </message>
    <message>
        <source>&amp;Sampling interval:</source>
        <translation>&amp;Abtastintervall:</translation>
    </message>
    <message>
        <source>&amp;Trigger:</source>
        <translation>A&amp;uslöser:</translation>
    </message>
    <message>
        <source>After so many publishing intervals without a connection the server forgets it.</source>
        <translation>Nach so vielen Sendeintervallen ohne Verbindung vergisst der Server sie.</translation>
    </message>
    <message>
        <source>After so many publishing intervals without news the server shows that it is there; %1 are asked for.</source>
        <translation>Nach so vielen Sendeintervallen ohne Neues zeigt der Server, dass er da ist; verlangt werden %1.</translation>
    </message>
    <message>
        <source>As the &amp;view has it</source>
        <translation>Wie die &amp;Ansicht</translation>
    </message>
    <message>
        <source>Dead&amp;band:</source>
        <translation>Tot&amp;band:</translation>
    </message>
    <message>
        <source>Deadband &amp;value:</source>
        <translation>Wert des &amp;Totbands:</translation>
    </message>
    <message>
        <source>Discard the &amp;oldest value when the queue is full</source>
        <translation>Den älte&amp;sten Wert verwerfen, wenn die Warteschlange voll ist</translation>
    </message>
    <message>
        <source>Elements of an array: 3, 0:9, or 1,0:4 for a matrix. Empty for all.</source>
        <translation>Elemente eines Arrays: 3, 0:9, oder 1,0:4 bei einer Matrix. Leer für alle.</translation>
    </message>
    <message>
        <source>Gives up what these rows have of their own.</source>
        <translation>Gibt auf, was diese Zeilen an Eigenem haben.</translation>
    </message>
    <message>
        <source>How Values Are Watched</source>
        <translation>Wie Werte überwacht werden</translation>
    </message>
    <message>
        <source>How many values the server keeps until it sends them.</source>
        <translation>Wie viele Werte der Server aufbewahrt, bis er sie sendet.</translation>
    </message>
    <message>
        <source>How often the server looks at the value; 0: as often as it can.</source>
        <translation>Wie oft der Server nach dem Wert sieht; 0: so oft er kann.</translation>
    </message>
    <message>
        <source>How often the server sends what has changed.</source>
        <translation>Wie oft der Server sendet, was sich geändert hat.</translation>
    </message>
    <message>
        <source>In the unit of the value, or in percent of the range that the variable says it has.</source>
        <translation>In der Einheit des Werts, oder in Prozent des Bereichs, den die Variable angibt.</translation>
    </message>
    <message>
        <source>Keep-alive:</source>
        <translation>Lebenszeichen:</translation>
    </message>
    <message>
        <source>Monitorin&amp;g mode:</source>
        <translation>Über&amp;wachungsmodus:</translation>
    </message>
    <message>
        <source>Of the subscription; higher ones are sent first. Servers take it as it is.</source>
        <translation>Der Subscription; höhere werden zuerst gesendet. Server nehmen sie, wie sie ist.</translation>
    </message>
    <message>
        <source>P&amp;riority:</source>
        <translation>P&amp;riorität:</translation>
    </message>
    <message>
        <source>R&amp;ead instead, every:</source>
        <translation>Stattdessen l&amp;esen, alle:</translation>
    </message>
    <message>
        <source>Reads the value that often instead of having it watched, for servers that refuse.</source>
        <translation>Liest den Wert so oft, statt ihn überwachen zu lassen, für Server, die das ablehnen.</translation>
    </message>
    <message>
        <source>This is no index range, as 3, 0:9 or 1,0:4 are.</source>
        <translation>Das ist kein Indexbereich wie 3, 0:9 oder 1,0:4.</translation>
    </message>
    <message>
        <source>Ti&amp;mes:</source>
        <translation>Zei&amp;ten:</translation>
    </message>
    <message>
        <source>as often as published</source>
        <translation>so oft wie gesendet</translation>
    </message>
    <message>
        <source>no: it is watched</source>
        <translation>nein: wird überwacht</translation>
    </message>
    <message>
        <source>the server: %1</source>
        <translation>der Server: %1</translation>
    </message>
    <message>
        <source>the server: %1 (revised)</source>
        <translation>der Server: %1 (gewährt)</translation>
    </message>
</context>
<context>
    <name>QlumDaVerdict</name>
    <message numerus="yes">
        <source>%n message(s) lost</source>
        <translation>
            <numerusform>%n Meldung verloren</numerusform>
            <numerusform>%n Meldungen verloren</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n overflow(s)</source>
        <translation>
            <numerusform>%n Überlauf</numerusform>
            <numerusform>%n Überläufe</numerusform>
        </translation>
    </message>
    <message>
        <source>Changes of the value alone are not reported, only of its status.</source>
        <translation>Änderungen des Werts allein werden nicht gemeldet, nur die seines Status.</translation>
    </message>
    <message>
        <source>Changes within the deadband are not reported.</source>
        <translation>Änderungen innerhalb des Totbands werden nicht gemeldet.</translation>
    </message>
    <message>
        <source>Every value that the server has seen, looking every %1, has come.</source>
        <translation>Jeder Wert, den der Server gesehen hat, der alle %1 hinsieht, ist angekommen.</translation>
    </message>
    <message>
        <source>It is read every %1 and not watched: what it was in between, nobody has seen.</source>
        <translation>Er wird alle %1 gelesen und nicht überwacht: Was er dazwischen war, hat niemand gesehen.</translation>
    </message>
    <message>
        <source>Neither a value nor a sign of life has come of the subscription for that long.</source>
        <translation>So lange ist weder ein Wert noch ein Lebenszeichen der Subscription gekommen.</translation>
    </message>
    <message>
        <source>So many notifications of the subscription were lost on the way, and the server did not have them any more. Values of this row may have been among them.</source>
        <translation>So viele Notifications der Subscription sind unterwegs verloren gegangen, und der Server hatte sie nicht mehr. Werte dieser Zeile können darunter gewesen sein.</translation>
    </message>
    <message>
        <source>The monitoring mode is one in which the server sends nothing.</source>
        <translation>Der Überwachungsmodus ist einer, in dem der Server nichts sendet.</translation>
    </message>
    <message>
        <source>The newest value took so much longer than others of its server: it or the way to it is slower than what was agreed.</source>
        <translation>Der neueste Wert brauchte so viel länger als andere seines Servers: Er oder der Weg zu ihm ist langsamer als vereinbart.</translation>
    </message>
    <message>
        <source>The server does not watch this, so none of its values come.</source>
        <translation>Der Server überwacht das nicht, es kommt also keiner der Werte.</translation>
    </message>
    <message>
        <source>The server has not been asked yet, or has not answered.</source>
        <translation>Der Server wurde noch nicht gefragt oder hat nicht geantwortet.</translation>
    </message>
    <message>
        <source>The server looks every %1 instead of every %2 as it was asked to. What the value was in between, it has not seen; it offers no shorter interval.</source>
        <translation>Der Server sieht alle %1 hin statt alle %2, wie von ihm verlangt. Was der Wert dazwischen war, hat er nicht gesehen; ein kürzeres Intervall bietet er nicht an.</translation>
    </message>
    <message>
        <source>The server looks every %1, but sends every %2 and keeps one value until then: whatever changes more often is replaced before it is sent, and with a queue of one the server does not tell.</source>
        <translation>Der Server sieht alle %1 hin, sendet aber nur alle %2 und behält bis dahin einen Wert: Was sich öfter ändert, wird vor dem Senden ersetzt, und bei einer Warteschlange von eins sagt er das nicht.</translation>
    </message>
    <message>
        <source>The server reports each change, but keeps one value until it is sent: of two changes within %1 the first is lost, and with a queue of one it does not tell.</source>
        <translation>Der Server meldet jede Änderung, behält aber nur einen Wert, bis er gesendet wird: Von zwei Änderungen innerhalb von %1 geht die erste verloren, und bei einer Warteschlange von eins sagt er das nicht.</translation>
    </message>
    <message>
        <source>The server watches it and has not sent a value.</source>
        <translation>Der Server überwacht ihn und hat noch keinen Wert gesendet.</translation>
    </message>
    <message>
        <source>The server&apos;s queue of %1 values was full that often before it was sent, and values were dropped. A longer queue would have kept them.</source>
        <translation>Die Warteschlange des Servers von %1 Werten war so oft voll, bevor gesendet wurde, und Werte wurden verworfen. Eine längere Warteschlange hätte sie behalten.</translation>
    </message>
    <message>
        <source>The server&apos;s queue was full that often, and older values were dropped. It keeps no more than %1 values, so they would have to be sent more often.</source>
        <translation>Die Warteschlange des Servers war so oft voll, und ältere Werte wurden verworfen. Er behält höchstens %1 Werte; sie müssten also öfter gesendet werden.</translation>
    </message>
    <message>
        <source>The subscription is alive; the value has not changed.</source>
        <translation>Die Subscription lebt; der Wert hat sich nicht geändert.</translation>
    </message>
    <message>
        <source>There is no connection: what the value does meanwhile, nobody can tell.</source>
        <translation>Es gibt keine Verbindung: Was der Wert inzwischen tut, kann niemand sagen.</translation>
    </message>
    <message>
        <source>There is nothing on a server that could be watched.</source>
        <translation>Auf einem Server ist nichts, was überwacht werden könnte.</translation>
    </message>
    <message>
        <source>cannot be known</source>
        <translation>nicht feststellbar</translation>
    </message>
    <message>
        <source>complete</source>
        <translation>vollständig</translation>
    </message>
    <message>
        <source>complete, unchanged for %1</source>
        <translation>vollständig, unverändert seit %1</translation>
    </message>
    <message>
        <source>late by %1</source>
        <translation>um %1 verspätet</translation>
    </message>
    <message>
        <source>no value yet</source>
        <translation>noch kein Wert</translation>
    </message>
    <message>
        <source>not known yet</source>
        <translation>noch nicht bekannt</translation>
    </message>
    <message>
        <source>not reported</source>
        <translation>nicht gemeldet</translation>
    </message>
    <message>
        <source>not watched</source>
        <translation>nicht überwacht</translation>
    </message>
    <message>
        <source>refused</source>
        <translation>abgelehnt</translation>
    </message>
    <message>
        <source>sampled</source>
        <translation>abgetastet</translation>
    </message>
    <message>
        <source>sampled here</source>
        <translation>hier abgetastet</translation>
    </message>
    <message>
        <source>silent for %1</source>
        <translation>still seit %1</translation>
    </message>
</context>
<context>
    <name>QlumDaView</name>
    <message>
        <source>%1 cannot be edited.</source>
        <translation>%1 kann nicht bearbeitet werden.</translation>
    </message>
    <message>
        <source>%1 cannot be written.</source>
        <translation>%1 kann nicht geschrieben werden.</translation>
    </message>
    <message numerus="yes">
        <source>%1 did not take the new settings of %n row(s).</source>
        <translation>
            <numerusform>%1 hat die neuen Einstellungen von %n Zeile nicht angenommen.</numerusform>
            <numerusform>%1 hat die neuen Einstellungen von %n Zeilen nicht angenommen.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 does not watch %n row(s).</source>
        <translation>
            <numerusform>%1 überwacht %n Zeile nicht.</numerusform>
            <numerusform>%1 überwacht %n Zeilen nicht.</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 has a row already.</source>
        <translation>%1 hat bereits eine Zeile.</translation>
    </message>
    <message>
        <source>%1 of them replaced before they were shown</source>
        <translation>%1 davon ersetzt, bevor sie gezeigt wurden</translation>
    </message>
    <message>
        <source>%1 values/s in %2 notifications/s</source>
        <translation>%1 Werte/s in %2 Notifications/s</translation>
    </message>
    <message>
        <source>%1 was not written.</source>
        <translation>%1 wurde nicht geschrieben.</translation>
    </message>
    <message>
        <source>%1. The values can be read again and again instead, and are marked then.</source>
        <translation>%1. Die Werte können stattdessen immer wieder gelesen werden und sind dann gekennzeichnet.</translation>
    </message>
    <message>
        <source>%1. They go on as before.</source>
        <translation>%1. Sie laufen weiter wie bisher.</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message numerus="yes">
        <source>%n node(s) have a row already.</source>
        <translation>
            <numerusform>%n Knoten hat bereits eine Zeile.</numerusform>
            <numerusform>%n Knoten haben bereits eine Zeile.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n row(s)</source>
        <translation>
            <numerusform>%n Zeile</numerusform>
            <numerusform>%n Zeilen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n row(s) of the project were not taken.</source>
        <translation>
            <numerusform>%n Zeile des Projekts wurde nicht übernommen.</numerusform>
            <numerusform>%n Zeilen des Projekts wurden nicht übernommen.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n row(s); what is not touched stays as each of them has it</source>
        <translation>
            <numerusform>%n Zeile; was nicht angefasst wird, bleibt, wie es ist</numerusform>
            <numerusform>%n Zeilen; was nicht angefasst wird, bleibt, wie jede es hat</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Add Again</source>
        <translation>&amp;Wieder hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Ask Again</source>
        <translation>&amp;Erneut fragen</translation>
    </message>
    <message>
        <source>&amp;Commands</source>
        <translation>&amp;Befehle</translation>
    </message>
    <message>
        <source>&amp;Edit Value</source>
        <translation>Wert &amp;bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Publish Every %1</source>
        <translation>Alle %1 &amp;senden</translation>
    </message>
    <message>
        <source>&amp;Read Every %1</source>
        <translation>Alle %1 &amp;lesen</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>&amp;Show Value in Full</source>
        <translation>Wert vollständig &amp;zeigen</translation>
    </message>
    <message>
        <source>&lt;b&gt;Add Parts as Rows&lt;/b&gt;&lt;br&gt;Makes rows of the elements of an array and of the fields of a structure.</source>
        <translation>&lt;b&gt;Teile als Zeilen hinzufügen&lt;/b&gt;&lt;br&gt;Macht Zeilen aus den Elementen eines Arrays und den Feldern einer Struktur.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Ask the Server Again&lt;/b&gt;&lt;br&gt;Tries once more to have rows watched that the server has refused, or of which it only tells faults.</source>
        <translation>&lt;b&gt;Den Server erneut fragen&lt;/b&gt;&lt;br&gt;Versucht noch einmal, Zeilen überwachen zu lassen, die der Server abgelehnt hat oder von denen er nur Fehler meldet.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Edit Value&lt;/b&gt;&lt;br&gt;Opens an editor for the value of the current row and writes what is entered to the server.</source>
        <translation>&lt;b&gt;Wert bearbeiten&lt;/b&gt;&lt;br&gt;Öffnet einen Editor für den Wert der aktuellen Zeile und schreibt die Eingabe auf den Server.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Move Down&lt;/b&gt;&lt;br&gt;Moves the selected rows one place down, while they are not sorted by a column.</source>
        <translation>&lt;b&gt;Nach unten&lt;/b&gt;&lt;br&gt;Schiebt die gewählten Zeilen einen Platz nach unten, solange nicht nach einer Spalte sortiert ist.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Move Up&lt;/b&gt;&lt;br&gt;Moves the selected rows one place up, while they are not sorted by a column.</source>
        <translation>&lt;b&gt;Nach oben&lt;/b&gt;&lt;br&gt;Schiebt die gewählten Zeilen einen Platz nach oben, solange nicht nach einer Spalte sortiert ist.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Plot&lt;/b&gt;&lt;br&gt;Draws the values of the selected rows from now on.</source>
        <translation>&lt;b&gt;Plotten&lt;/b&gt;&lt;br&gt;Zeichnet die Werte der gewählten Zeilen ab jetzt.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Remove&lt;/b&gt;&lt;br&gt;Takes the selected rows out of this view. Nothing changes on the server.</source>
        <translation>&lt;b&gt;Entfernen&lt;/b&gt;&lt;br&gt;Nimmt die gewählten Zeilen aus dieser Ansicht. Auf dem Server ändert sich nichts.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Reset Counts&lt;/b&gt;&lt;br&gt;Change count, minimum and maximum of the selected rows begin anew.</source>
        <translation>&lt;b&gt;Zähler zurücksetzen&lt;/b&gt;&lt;br&gt;Änderungszahl, Minimum und Maximum der gewählten Zeilen beginnen neu.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Settings of Rows&lt;/b&gt;&lt;br&gt;How the selected rows are watched: intervals, queue, deadband and what the server has made of them.</source>
        <translation>&lt;b&gt;Einstellungen der Zeilen&lt;/b&gt;&lt;br&gt;Wie die gewählten Zeilen überwacht werden: Intervalle, Warteschlange, Totband und was der Server daraus gemacht hat.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Settings of the View&lt;/b&gt;&lt;br&gt;How all rows are watched that have no settings of their own.</source>
        <translation>&lt;b&gt;Einstellungen der Ansicht&lt;/b&gt;&lt;br&gt;Wie alle Zeilen überwacht werden, die keine eigenen Einstellungen haben.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Show Value in Full&lt;/b&gt;&lt;br&gt;Opens structures, arrays and pictures in a window of their own.</source>
        <translation>&lt;b&gt;Wert vollständig zeigen&lt;/b&gt;&lt;br&gt;Öffnet Strukturen, Arrays und Bilder in einem eigenen Fenster.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Take out of the Plot&lt;/b&gt;&lt;br&gt;Ends the curves of the selected rows.</source>
        <translation>&lt;b&gt;Aus dem Plot nehmen&lt;/b&gt;&lt;br&gt;Beendet die Kurven der gewählten Zeilen.</translation>
    </message>
    <message>
        <source>A view has %1 rows at most.</source>
        <translation>Eine Ansicht hat höchstens %1 Zeilen.</translation>
    </message>
    <message>
        <source>Add &amp;Parts as Rows</source>
        <translation>Tei&amp;le als Zeilen hinzufügen</translation>
    </message>
    <message>
        <source>All rows</source>
        <translation>Alle Zeilen</translation>
    </message>
    <message>
        <source>All rows of this view that have no settings of their own</source>
        <translation>Alle Zeilen dieser Ansicht, die keine eigenen Einstellungen haben</translation>
    </message>
    <message>
        <source>Ask the Server A&amp;gain</source>
        <translation>Den Server &amp;erneut fragen</translation>
    </message>
    <message>
        <source>By folder</source>
        <translation>Nach Ordner</translation>
    </message>
    <message>
        <source>By server</source>
        <translation>Nach Server</translation>
    </message>
    <message>
        <source>Connect %1 first.</source>
        <translation>Verbinden Sie zuerst %1.</translation>
    </message>
    <message>
        <source>Data Access View</source>
        <translation>Datenzugriff</translation>
    </message>
    <message>
        <source>Drop variables or branches here from the Address Space window, or choose &quot;Add to Data Access View&quot; in the menu of a node.</source>
        <translation>Legen Sie Variablen oder Zweige aus dem Adressraumfenster hier ab, oder wählen Sie im Menü eines Knotens „Zu Datenzugriff hinzufügen“.</translation>
    </message>
    <message>
        <source>Elements of arrays and fields of structures that are known can be rows of their own.</source>
        <translation>Elemente von Arrays und bekannte Felder von Strukturen können eigene Zeilen sein.</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Filter by server, node, name, path, type or unit</source>
        <translation>Nach Server, Knoten, Name, Pfad, Typ oder Einheit filtern</translation>
    </message>
    <message>
        <source>More about the values</source>
        <translation>Mehr zu den Werten</translation>
    </message>
    <message>
        <source>Move &amp;Down</source>
        <translation>Nach &amp;unten</translation>
    </message>
    <message>
        <source>Move &amp;Up</source>
        <translation>Nach &amp;oben</translation>
    </message>
    <message>
        <source>No groups</source>
        <translation>Keine Gruppen</translation>
    </message>
    <message>
        <source>No row is selected</source>
        <translation>Es ist keine Zeile gewählt</translation>
    </message>
    <message>
        <source>P&amp;lot</source>
        <translation>Pl&amp;otten</translation>
    </message>
    <message>
        <source>Plot</source>
        <translation>Plot</translation>
    </message>
    <message>
        <source>Reading names and types of variables</source>
        <translation>Namen und Typen von Variablen lesen</translation>
    </message>
    <message>
        <source>Reading what an editor has to know</source>
        <translation>Lesen, was ein Editor wissen muss</translation>
    </message>
    <message>
        <source>Reset Cou&amp;nts</source>
        <translation>Zähler zurück&amp;setzen</translation>
    </message>
    <message>
        <source>Rows in trouble</source>
        <translation>Zeilen mit Problemen</translation>
    </message>
    <message>
        <source>Se&amp;ttings of Rows...</source>
        <translation>E&amp;instellungen der Zeilen...</translation>
    </message>
    <message>
        <source>Select a row to see whether all of its values have come, and why not.</source>
        <translation>Wählen Sie eine Zeile, um zu sehen, ob alle ihre Werte angekommen sind und wenn nicht, warum.</translation>
    </message>
    <message>
        <source>Set a &amp;Queue of %1</source>
        <translation>&amp;Warteschlange auf %1 setzen</translation>
    </message>
    <message>
        <source>Sets for the selected rows what would have sufficed.</source>
        <translation>Stellt für die gewählten Zeilen ein, was gereicht hätte.</translation>
    </message>
    <message>
        <source>Settings of the &amp;View...</source>
        <translation>Einstellungen der &amp;Ansicht...</translation>
    </message>
    <message>
        <source>Shows the rows only that have this text.</source>
        <translation>Zeigt nur die Zeilen, die diesen Text enthalten.</translation>
    </message>
    <message>
        <source>Take out of the Plot</source>
        <translation>Aus dem Plot nehmen</translation>
    </message>
    <message>
        <source>The selected values have no parts.</source>
        <translation>Die gewählten Werte haben keine Teile.</translation>
    </message>
    <message>
        <source>The value cannot be edited without a connection.</source>
        <translation>Der Wert kann ohne Verbindung nicht bearbeitet werden.</translation>
    </message>
    <message>
        <source>The value cannot be edited.</source>
        <translation>Der Wert kann nicht bearbeitet werden.</translation>
    </message>
    <message>
        <source>The value has no field &quot;%1&quot; now, or nobody knows its type.</source>
        <translation>Der Wert hat jetzt kein Feld „%1“, oder niemand kennt seinen Typ.</translation>
    </message>
    <message>
        <source>They were not added a second time.</source>
        <translation>Sie wurden nicht ein zweites Mal hinzugefügt.</translation>
    </message>
    <message>
        <source>Traffic</source>
        <translation>Verkehr</translation>
    </message>
    <message>
        <source>Variables that are added</source>
        <translation>Variablen, die hinzukommen</translation>
    </message>
    <message>
        <source>Watched values</source>
        <translation>Überwachte Werte</translation>
    </message>
    <message>
        <source>What can be done with rows and with the view.</source>
        <translation>Was sich mit Zeilen und mit der Ansicht tun lässt.</translation>
    </message>
    <message>
        <source>What rows stand together by</source>
        <translation>Wonach Zeilen beieinanderstehen</translation>
    </message>
    <message>
        <source>Where Did My Values Go?</source>
        <translation>Wo sind meine Werte geblieben?</translation>
    </message>
    <message>
        <source>Which rows are shown</source>
        <translation>Welche Zeilen gezeigt werden</translation>
    </message>
    <message>
        <source>Writable rows</source>
        <translation>Schreibbare Zeilen</translation>
    </message>
    <message>
        <source>Writing %1</source>
        <translation>%1 schreiben</translation>
    </message>
    <message>
        <source>oldest value: %1</source>
        <translation>ältester Wert: %1</translation>
    </message>
    <message>
        <source>queue: %1 rows, %2 calls</source>
        <translation>in der Schlange: %1 Zeilen, %2 Aufrufe</translation>
    </message>
    <message>
        <source>round trip to %1: %2 ms</source>
        <translation>hin und zurück zu %1: %2 ms</translation>
    </message>
</context>
<context>
    <name>QlumDataLoggerPlugin</name>
    <message>
        <source>Records the values of variables of one or more servers in files, and says where something is missing.</source>
        <translation>Zeichnet die Werte von Variablen eines oder mehrerer Server in Dateien auf und sagt, wo etwas fehlt.</translation>
    </message>
</context>
<context>
    <name>QlumDetailsModel</name>
    <message>
        <source>Array of %1</source>
        <translation>Array von %1</translation>
    </message>
    <message>
        <source>ExtensionObject</source>
        <translation>ExtensionObject</translation>
    </message>
    <message>
        <source>Matrix of %1</source>
        <translation>Matrix von %1</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Null</source>
        <translation>Null</translation>
    </message>
    <message>
        <source>Switch Field</source>
        <translation>Switch-Feld</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>len=%1, 0x%2</source>
        <translation>len=%1, 0x%2</translation>
    </message>
    <message>
        <source>not yet implemented</source>
        <translation>noch nicht umgesetzt</translation>
    </message>
</context>
<context>
    <name>QlumDeviceClient</name>
    <message>
        <source>%1 is locked by %2. Nothing was written.</source>
        <translation>%1 ist von %2 gesperrt. Es wurde nichts geschrieben.</translation>
    </message>
    <message>
        <source>Reading a document</source>
        <translation>Ein Dokument lesen</translation>
    </message>
    <message>
        <source>Reading parameters back</source>
        <translation>Parameter zurücklesen</translation>
    </message>
    <message>
        <source>The lock of %1 could not be renewed: %2. Nothing was written.</source>
        <translation>Die Sperre von %1 konnte nicht verlängert werden: %2. Es wurde nichts geschrieben.</translation>
    </message>
    <message>
        <source>Writing parameters</source>
        <translation>Parameter schreiben</translation>
    </message>
    <message>
        <source>no result has come for a minute; the device may go on by itself</source>
        <translation>seit einer Minute ist kein Ergebnis gekommen; das Gerät macht vielleicht von selbst weiter</translation>
    </message>
    <message>
        <source>the server did not say what it came to</source>
        <translation>der Server hat nicht gesagt, was daraus wurde</translation>
    </message>
    <message>
        <source>the server&apos;s answer could not be read</source>
        <translation>die Antwort des Servers konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>there are more results than are kept</source>
        <translation>es gibt mehr Ergebnisse, als behalten werden</translation>
    </message>
    <message>
        <source>you have cancelled; the device may go on by itself</source>
        <translation>Sie haben abgebrochen; das Gerät macht vielleicht von selbst weiter</translation>
    </message>
</context>
<context>
    <name>QlumDeviceDifferenceDialog</name>
    <message>
        <source>&amp;Take Over</source>
        <translation>Ü&amp;bernehmen</translation>
    </message>
    <message>
        <source>Differences</source>
        <translation>Unterschiede</translation>
    </message>
    <message>
        <source>Marks the chosen values as changed; they are written with the command Write</source>
        <translation>Kennzeichnet die gewählten Werte als geändert; geschrieben werden sie mit dem Befehl „Schreiben“</translation>
    </message>
    <message>
        <source>There is no difference.</source>
        <translation>Es gibt keinen Unterschied.</translation>
    </message>
</context>
<context>
    <name>QlumDeviceDocumentPage</name>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <source>Document</source>
        <translation>Dokument</translation>
    </message>
    <message>
        <source>Documents of the device</source>
        <translation>Dokumente des Geräts</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Handbuch</translation>
    </message>
    <message>
        <source>Sa&amp;ve As...</source>
        <translation>Speichern &amp;unter...</translation>
    </message>
    <message>
        <source>Save the document to a file</source>
        <translation>Das Dokument in eine Datei speichern</translation>
    </message>
    <message>
        <source>Show an image or a text here, or a page of the web in the browser</source>
        <translation>Ein Bild oder einen Text hier zeigen, eine Webseite im Browser</translation>
    </message>
    <message>
        <source>The device has no documents.</source>
        <translation>Das Gerät hat keine Dokumente.</translation>
    </message>
    <message>
        <source>Where</source>
        <translation>Wo</translation>
    </message>
    <message>
        <source>on the server, of the device</source>
        <translation>auf dem Server, vom Gerät</translation>
    </message>
    <message>
        <source>on the server, of the device&apos;s type</source>
        <translation>auf dem Server, vom Typ des Geräts</translation>
    </message>
</context>
<context>
    <name>QlumDeviceLockBar</name>
    <message>
        <source>%1 is locked by %2%3.</source>
        <translation>%1 ist gesperrt von %2%3.</translation>
    </message>
    <message>
        <source>%1 is locked by you%2.</source>
        <translation>%1 ist von Ihnen gesperrt%2.</translation>
    </message>
    <message>
        <source>%1 is not locked.</source>
        <translation>%1 ist nicht gesperrt.</translation>
    </message>
    <message>
        <source>&amp;Break Lock...</source>
        <translation>Sperre auf&amp;brechen...</translation>
    </message>
    <message>
        <source>&amp;Lock</source>
        <translation>&amp;Sperren</translation>
    </message>
    <message>
        <source>&amp;Unlock</source>
        <translation>&amp;Freigeben</translation>
    </message>
    <message>
        <source>, for %1 s more unless it is renewed</source>
        <translation>, noch %1 s, wenn nicht verlängert wird</translation>
    </message>
    <message>
        <source>End the lock of somebody else; servers let administrators do that</source>
        <translation>Die Sperre eines anderen beenden; Server erlauben das Administratoren</translation>
    </message>
    <message>
        <source>Let others change the device again</source>
        <translation>Andere das Gerät wieder ändern lassen</translation>
    </message>
    <message>
        <source>Lock the device, so that nobody else changes it meanwhile</source>
        <translation>Das Gerät sperren, damit es inzwischen niemand anderes ändert</translation>
    </message>
    <message>
        <source>Whether %1 is locked cannot be read.</source>
        <translation>Ob %1 gesperrt ist, kann nicht gelesen werden.</translation>
    </message>
</context>
<context>
    <name>QlumDeviceMethodPage</name>
    <message>
        <source>%1 was not called.</source>
        <translation>%1 wurde nicht aufgerufen.</translation>
    </message>
    <message>
        <source>&amp;Call...</source>
        <translation>&amp;Aufrufen...</translation>
    </message>
    <message>
        <source>Call the selected method of the device</source>
        <translation>Die gewählte Methode des Geräts aufrufen</translation>
    </message>
    <message>
        <source>Groups</source>
        <translation>Gruppen</translation>
    </message>
    <message>
        <source>Method</source>
        <translation>Methode</translation>
    </message>
    <message>
        <source>Methods of the device</source>
        <translation>Methoden des Geräts</translation>
    </message>
    <message>
        <source>The device has no methods.</source>
        <translation>Das Gerät hat keine Methoden.</translation>
    </message>
    <message>
        <source>There is no tool that calls methods.</source>
        <translation>Es gibt kein Werkzeug, das Methoden aufruft.</translation>
    </message>
</context>
<context>
    <name>QlumDeviceTransferPage</name>
    <message>
        <source>&amp;Cancel</source>
        <translation>A&amp;bbrechen</translation>
    </message>
    <message>
        <source>&amp;To Device</source>
        <translation>&amp;Zum Gerät</translation>
    </message>
    <message>
        <source>Ask for no more results</source>
        <translation>Keine weiteren Ergebnisse abfragen</translation>
    </message>
    <message>
        <source>Done: %1 parameters, %2 of them refused.</source>
        <translation>Fertig: %1 Parameter, davon %2 abgelehnt.</translation>
    </message>
    <message>
        <source>Fro&amp;m Device</source>
        <translation>Vo&amp;m Gerät</translation>
    </message>
    <message>
        <source>Good</source>
        <translation>Gut</translation>
    </message>
    <message>
        <source>Have the server fetch the parameters of the device</source>
        <translation>Den Server die Parameter des Geräts holen lassen</translation>
    </message>
    <message>
        <source>Not finished after %1 parameters: %2.</source>
        <translation>Nach %1 Parametern nicht fertig: %2.</translation>
    </message>
    <message>
        <source>Parameter</source>
        <translation>Parameter</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Results of the transfer</source>
        <translation>Ergebnisse der Übertragung</translation>
    </message>
    <message>
        <source>Send the parameters that the server has to the device</source>
        <translation>Die Parameter, die der Server hat, an das Gerät senden</translation>
    </message>
    <message>
        <source>What the device says of each parameter appears here.</source>
        <translation>Hier erscheint, was das Gerät zu jedem Parameter sagt.</translation>
    </message>
</context>
<context>
    <name>QlumDeviceTreeModel</name>
    <message>
        <source>Connected to: %1</source>
        <translation>Verbunden mit: %1</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>Gerät</translation>
    </message>
    <message>
        <source>Health</source>
        <translation>Gesundheit</translation>
    </message>
    <message>
        <source>Lock</source>
        <translation>Sperre</translation>
    </message>
    <message>
        <source>Locked by %1</source>
        <translation>Gesperrt von %1</translation>
    </message>
    <message>
        <source>Missing: %1</source>
        <translation>Fehlt: %1</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>locked</source>
        <translation>gesperrt</translation>
    </message>
</context>
<context>
    <name>QlumDeviceWords</name>
    <message>
        <source>Asset id</source>
        <translation>Asset-Id</translation>
    </message>
    <message>
        <source>Component name</source>
        <translation>Komponentenname</translation>
    </message>
    <message>
        <source>Device class</source>
        <translation>Geräteklasse</translation>
    </message>
    <message>
        <source>Device manual</source>
        <translation>Gerätehandbuch</translation>
    </message>
    <message>
        <source>Device revision</source>
        <translation>Geräterevision</translation>
    </message>
    <message>
        <source>Hardware revision</source>
        <translation>Hardwarerevision</translation>
    </message>
    <message>
        <source>Manufacturer</source>
        <translation>Hersteller</translation>
    </message>
    <message>
        <source>Manufacturer URI</source>
        <translation>Hersteller-URI</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Modell</translation>
    </message>
    <message>
        <source>Product code</source>
        <translation>Produktcode</translation>
    </message>
    <message>
        <source>Product instance URI</source>
        <translation>Produktinstanz-URI</translation>
    </message>
    <message>
        <source>Revision counter</source>
        <translation>Revisionszähler</translation>
    </message>
    <message>
        <source>Serial number</source>
        <translation>Seriennummer</translation>
    </message>
    <message>
        <source>Software revision</source>
        <translation>Softwarerevision</translation>
    </message>
    <message>
        <source>Somebody works on the device: its values are not valid for the time being.</source>
        <translation>Am Gerät wird gearbeitet: Seine Werte gelten vorerst nicht.</translation>
    </message>
    <message>
        <source>The device does not tell its health.</source>
        <translation>Das Gerät nennt seine Gesundheit nicht.</translation>
    </message>
    <message>
        <source>The device has failed: its values are not valid.</source>
        <translation>Das Gerät ist ausgefallen: Seine Werte gelten nicht.</translation>
    </message>
    <message>
        <source>The device works as it should.</source>
        <translation>Das Gerät arbeitet, wie es soll.</translation>
    </message>
    <message>
        <source>The device works outside of what it is made for: its values may be wrong.</source>
        <translation>Das Gerät arbeitet außerhalb dessen, wofür es gemacht ist: Seine Werte können falsch sein.</translation>
    </message>
    <message>
        <source>The values are valid, but the device has to be looked after soon.</source>
        <translation>Die Werte gelten, aber das Gerät braucht bald Wartung.</translation>
    </message>
    <message>
        <source>connection point</source>
        <translation>Verbindungspunkt</translation>
    </message>
    <message>
        <source>device</source>
        <translation>Gerät</translation>
    </message>
    <message>
        <source>features of devices</source>
        <translation>Merkmale von Geräten</translation>
    </message>
    <message>
        <source>group</source>
        <translation>Gruppe</translation>
    </message>
    <message>
        <source>network</source>
        <translation>Netzwerk</translation>
    </message>
    <message>
        <source>somebody</source>
        <translation>jemand</translation>
    </message>
    <message>
        <source>the device cannot be locked</source>
        <translation>das Gerät kann nicht gesperrt werden</translation>
    </message>
    <message>
        <source>the device cannot be reached</source>
        <translation>das Gerät ist nicht erreichbar</translation>
    </message>
    <message>
        <source>the device could not be reached to the end</source>
        <translation>das Gerät war nicht bis zum Ende erreichbar</translation>
    </message>
    <message>
        <source>the device has to be locked first</source>
        <translation>das Gerät muss zuerst gesperrt werden</translation>
    </message>
    <message>
        <source>the device is locked by somebody else already</source>
        <translation>das Gerät ist bereits von jemand anderem gesperrt</translation>
    </message>
    <message>
        <source>the device is not locked</source>
        <translation>das Gerät ist nicht gesperrt</translation>
    </message>
    <message>
        <source>the device is not locked by this session</source>
        <translation>das Gerät ist nicht von dieser Sitzung gesperrt</translation>
    </message>
    <message>
        <source>the device is not locked by this session any more</source>
        <translation>das Gerät ist nicht mehr von dieser Sitzung gesperrt</translation>
    </message>
    <message>
        <source>the server does not know this transfer any more</source>
        <translation>der Server kennt diese Übertragung nicht mehr</translation>
    </message>
    <message>
        <source>the server has refused it with the status %1</source>
        <translation>der Server hat es mit dem Status %1 abgelehnt</translation>
    </message>
    <message>
        <source>the transfer failed for a reason that is not known</source>
        <translation>die Übertragung scheiterte aus unbekanntem Grund</translation>
    </message>
    <message>
        <source>the transfer was cancelled</source>
        <translation>die Übertragung wurde abgebrochen</translation>
    </message>
</context>
<context>
    <name>QlumDevicesPlugin</name>
    <message>
        <source>Shows the devices of a server with their health, nameplates, parameters, methods and documents, and configures them.</source>
        <translation>Zeigt die Geräte eines Servers mit Gesundheit, Typenschildern, Parametern, Methoden und Dokumenten und stellt sie ein.</translation>
    </message>
</context>
<context>
    <name>QlumDevicesView</name>
    <message>
        <source>%1 cannot be compared with its type.</source>
        <translation>%1 kann nicht mit seinem Typ verglichen werden.</translation>
    </message>
    <message>
        <source>%1 cannot be edited.</source>
        <translation>%1 kann nicht bearbeitet werden.</translation>
    </message>
    <message>
        <source>%1 cannot be shown.</source>
        <translation>%1 kann nicht gezeigt werden.</translation>
    </message>
    <message>
        <source>%1 could not be read.</source>
        <translation>%1 konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>%1 has more devices than are shown.</source>
        <translation>%1 hat mehr Geräte, als gezeigt werden.</translation>
    </message>
    <message>
        <source>%1 has no devices.</source>
        <translation>%1 hat keine Geräte.</translation>
    </message>
    <message>
        <source>%1 has no devices: it does not know the namespace %2.</source>
        <translation>%1 hat keine Geräte: Er kennt den Namensraum %2 nicht.</translation>
    </message>
    <message>
        <source>%1 is locked by %2.</source>
        <translation>%1 ist von %2 gesperrt.</translation>
    </message>
    <message>
        <source>%1 is locked by %2. Whoever that is may be changing the device just now.

Break the lock?</source>
        <translation>%1 ist von %2 gesperrt. Wer das ist, ändert das Gerät vielleicht gerade.

Sperre aufbrechen?</translation>
    </message>
    <message>
        <source>%1 is no address of the web; it may be a name under which it is found elsewhere.</source>
        <translation>%1 ist keine Webadresse; vielleicht ein Name, unter dem es anderswo zu finden ist.</translation>
    </message>
    <message>
        <source>%1 is saved in %2.</source>
        <translation>%1 ist in %2 gespeichert.</translation>
    </message>
    <message>
        <source>%1 knows the namespace of devices, but has no %2.</source>
        <translation>%1 kennt den Namensraum von Geräten, hat aber kein %2.</translation>
    </message>
    <message>
        <source>%1 lacks what every device must have: %2.</source>
        <translation>%1 fehlt, was jedes Gerät haben muss: %2.</translation>
    </message>
    <message>
        <source>%1 of %2 values were not written; they stay changed and say why.</source>
        <translation>%1 von %2 Werten wurden nicht geschrieben; sie bleiben geändert und sagen, warum.</translation>
    </message>
    <message>
        <source>%1 was not locked.</source>
        <translation>%1 wurde nicht gesperrt.</translation>
    </message>
    <message>
        <source>%1 was not read.</source>
        <translation>%1 wurde nicht gelesen.</translation>
    </message>
    <message>
        <source>%1 was not saved.</source>
        <translation>%1 wurde nicht gespeichert.</translation>
    </message>
    <message>
        <source>%1 was not unlocked.</source>
        <translation>%1 wurde nicht freigegeben.</translation>
    </message>
    <message>
        <source>%1 was not written.</source>
        <translation>%1 wurde nicht geschrieben.</translation>
    </message>
    <message>
        <source>%1, as it was saved on %2, and what %3 has now:</source>
        <translation>%1, wie am %2 gespeichert, und was %3 jetzt hat:</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>Auf&amp;frischen</translation>
    </message>
    <message>
        <source>&lt;b&gt;Refresh&lt;/b&gt;&lt;br&gt;Reads devices, nameplates, health and locks again. Changed values stay.</source>
        <translation>&lt;b&gt;Auffrischen&lt;/b&gt;&lt;br&gt;Liest Geräte, Typenschilder, Gesundheit und Sperren erneut. Geänderte Werte bleiben.</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Breaking the lock of %1</source>
        <translation>Die Sperre von %1 aufbrechen</translation>
    </message>
    <message>
        <source>Devices</source>
        <translation>Geräte</translation>
    </message>
    <message>
        <source>Devices View</source>
        <translation>Geräteansicht</translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>Dokumente</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Filter devices and nameplates</source>
        <translation>Geräte und Typenschilder filtern</translation>
    </message>
    <message>
        <source>Left out, because they could not be read: %1</source>
        <translation>Weggelassen, weil nicht lesbar: %1</translation>
    </message>
    <message>
        <source>Load Parameter Set</source>
        <translation>Parametersatz laden</translation>
    </message>
    <message>
        <source>Lock the device first: a transfer needs it for itself.</source>
        <translation>Sperren Sie zuerst das Gerät: Eine Übertragung braucht es für sich allein.</translation>
    </message>
    <message>
        <source>Locking %1</source>
        <translation>%1 sperren</translation>
    </message>
    <message>
        <source>Methods</source>
        <translation>Methoden</translation>
    </message>
    <message>
        <source>Nameplates</source>
        <translation>Typenschilder</translation>
    </message>
    <message>
        <source>Nothing was written.</source>
        <translation>Es wurde nichts geschrieben.</translation>
    </message>
    <message>
        <source>Parameter sets (*.json);;All files (*)</source>
        <translation>Parametersätze (*.json);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation>Parameter</translation>
    </message>
    <message>
        <source>Parts of the device</source>
        <translation>Teile des Geräts</translation>
    </message>
    <message>
        <source>Read the devices from the server again</source>
        <translation>Die Geräte erneut vom Server lesen</translation>
    </message>
    <message>
        <source>Reading device %1</source>
        <translation>Gerät %1 lesen</translation>
    </message>
    <message>
        <source>Reading devices</source>
        <translation>Geräte lesen</translation>
    </message>
    <message>
        <source>Reading document %1</source>
        <translation>Dokument %1 lesen</translation>
    </message>
    <message>
        <source>Reading parameters</source>
        <translation>Parameter lesen</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Select a server in the project to see its devices.</source>
        <translation>Wählen Sie im Projekt einen Server, um seine Geräte zu sehen.</translation>
    </message>
    <message>
        <source>Shows the devices that have this text, and those above them</source>
        <translation>Zeigt die Geräte, die diesen Text haben, und die darüber</translation>
    </message>
    <message>
        <source>Tavelin on %1</source>
        <translation>Tavelin auf %1</translation>
    </message>
    <message>
        <source>The connection was closed, and locks belong to it.</source>
        <translation>Die Verbindung wurde geschlossen, und Sperren gehören zu ihr.</translation>
    </message>
    <message>
        <source>The connection was lost and came back as a new session; locks belong to the old one. What you have changed is not written yet: lock the device again before you write.</source>
        <translation>Die Verbindung ging verloren und kam als neue Sitzung zurück; Sperren gehören zur alten. Was Sie geändert haben, ist noch nicht geschrieben: Sperren Sie das Gerät wieder, bevor Sie schreiben.</translation>
    </message>
    <message>
        <source>The device does not have: %1</source>
        <translation>Das Gerät hat nicht: %1</translation>
    </message>
    <message>
        <source>The devices could not be read.</source>
        <translation>Die Geräte konnten nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The devices of a connected server appear here.</source>
        <translation>Hier erscheinen die Geräte eines verbundenen Servers.</translation>
    </message>
    <message>
        <source>The document cannot be opened.</source>
        <translation>Das Dokument kann nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>The file has</source>
        <translation>Die Datei hat</translation>
    </message>
    <message>
        <source>The file is of a device of another type: %1</source>
        <translation>Die Datei ist von einem Gerät anderen Typs: %1</translation>
    </message>
    <message>
        <source>The file is of another device of this type: %1, serial number %2</source>
        <translation>Die Datei ist von einem anderen Gerät dieses Typs: %1, Seriennummer %2</translation>
    </message>
    <message>
        <source>The lock of %1 was not broken.</source>
        <translation>Die Sperre von %1 wurde nicht aufgebrochen.</translation>
    </message>
    <message>
        <source>The nameplates of all devices appear here.</source>
        <translation>Hier erscheinen die Typenschilder aller Geräte.</translation>
    </message>
    <message>
        <source>The parameters of %1 are saved in %2.</source>
        <translation>Die Parameter von %1 sind in %2 gespeichert.</translation>
    </message>
    <message>
        <source>The transfer of %1 was not finished.</source>
        <translation>Die Übertragung von %1 wurde nicht beendet.</translation>
    </message>
    <message>
        <source>The type %1 tells no values of parameters.</source>
        <translation>Der Typ %1 nennt keine Werte von Parametern.</translation>
    </message>
    <message>
        <source>The type has</source>
        <translation>Der Typ hat</translation>
    </message>
    <message>
        <source>There is no browser for %1.</source>
        <translation>Für %1 gibt es keinen Browser.</translation>
    </message>
    <message>
        <source>There is no connection to %1. Connect it to see its devices.</source>
        <translation>Es gibt keine Verbindung zu %1. Verbinden Sie ihn, um seine Geräte zu sehen.</translation>
    </message>
    <message>
        <source>There is no connection to %1: what is shown is what was read last.</source>
        <translation>Es gibt keine Verbindung zu %1: Gezeigt wird das zuletzt Gelesene.</translation>
    </message>
    <message>
        <source>There is no viewer for it.</source>
        <translation>Dafür gibt es keinen Betrachter.</translation>
    </message>
    <message>
        <source>This computer has no program for it.</source>
        <translation>Auf diesem Rechner gibt es kein Programm dafür.</translation>
    </message>
    <message>
        <source>This device offers no transfer.</source>
        <translation>Dieses Gerät bietet keine Übertragung an.</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>Übertragung</translation>
    </message>
    <message>
        <source>Transfer from %1</source>
        <translation>Übertragung von %1</translation>
    </message>
    <message>
        <source>Transfer to %1</source>
        <translation>Übertragung zu %1</translation>
    </message>
    <message>
        <source>Unlocking %1</source>
        <translation>%1 freigeben</translation>
    </message>
    <message>
        <source>Where %1 differs from its type %2:</source>
        <translation>Worin sich %1 von seinem Typ %2 unterscheidet:</translation>
    </message>
    <message>
        <source>Writing parameters of %1</source>
        <translation>Parameter von %1 schreiben</translation>
    </message>
    <message>
        <source>Your lock of %1 is gone.</source>
        <translation>Ihre Sperre von %1 ist weg.</translation>
    </message>
    <message>
        <source>it is larger than files of this kind are</source>
        <translation>sie ist größer, als solche Dateien sind</translation>
    </message>
    <message>
        <source>reading...</source>
        <translation>wird gelesen...</translation>
    </message>
    <message>
        <source>working...</source>
        <translation>in Arbeit...</translation>
    </message>
    <message>
        <source>you have cancelled; the device may go on by itself</source>
        <translation>Sie haben abgebrochen; das Gerät macht vielleicht von selbst weiter</translation>
    </message>
</context>
<context>
    <name>QlumDiagnosis</name>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>Begun: %1</source>
        <translation>Begonnen: %1</translation>
    </message>
    <message>
        <source>Computer: %1, %2</source>
        <translation>Rechner: %1, %2</translation>
    </message>
    <message>
        <source>Connection diagnosis by %1 %2</source>
        <translation>Verbindungsdiagnose von %1 %2</translation>
    </message>
    <message>
        <source>Endpoints</source>
        <translation>Endpunkte</translation>
    </message>
    <message>
        <source>Hello</source>
        <translation>Hello</translation>
    </message>
    <message>
        <source>Name resolution</source>
        <translation>Namensauflösung</translation>
    </message>
    <message>
        <source>Nothing stops the connection; the user was not tried.</source>
        <translation>Nichts hält die Verbindung auf; der Benutzer wurde nicht versucht.</translation>
    </message>
    <message>
        <source>Our check of the server&apos;s certificate</source>
        <translation>Unsere Prüfung des Serverzertifikats</translation>
    </message>
    <message>
        <source>Result: %1</source>
        <translation>Ergebnis: %1</translation>
    </message>
    <message>
        <source>Secure channel</source>
        <translation>Sicherer Kanal</translation>
    </message>
    <message>
        <source>Security: %1</source>
        <translation>Sicherheit: %1</translation>
    </message>
    <message>
        <source>Server: %1</source>
        <translation>Server: %1</translation>
    </message>
    <message>
        <source>Session</source>
        <translation>Sitzung</translation>
    </message>
    <message>
        <source>Status: %1 (0x%2)</source>
        <translation>Status: %1 (0x%2)</translation>
    </message>
    <message>
        <source>Stopped by: %1</source>
        <translation>Aufgehalten durch: %1</translation>
    </message>
    <message>
        <source>TCP connection</source>
        <translation>TCP-Verbindung</translation>
    </message>
    <message>
        <source>The connection can be made, but see the steps with a warning.</source>
        <translation>Die Verbindung ist möglich, aber beachten Sie die Schritte mit Warnung.</translation>
    </message>
    <message>
        <source>The connection can be made; every step has passed.</source>
        <translation>Die Verbindung ist möglich; jeder Schritt war erfolgreich.</translation>
    </message>
    <message>
        <source>The connection is being tried step by step...</source>
        <translation>Die Verbindung wird Schritt für Schritt versucht...</translation>
    </message>
    <message>
        <source>The connection stops at &apos;%1&apos;. %2</source>
        <translation>Die Verbindung scheitert bei „%1“. %2</translation>
    </message>
    <message>
        <source>The diagnosis was not finished.</source>
        <translation>Die Diagnose wurde nicht zu Ende geführt.</translation>
    </message>
    <message>
        <source>The server&apos;s check of our certificate</source>
        <translation>Prüfung unseres Zertifikats durch den Server</translation>
    </message>
    <message>
        <source>URL: %1</source>
        <translation>URL: %1</translation>
    </message>
    <message>
        <source>User</source>
        <translation>Benutzer</translation>
    </message>
    <message>
        <source>User: %1</source>
        <translation>Benutzer: %1</translation>
    </message>
    <message>
        <source>What to do: %1</source>
        <translation>Was zu tun ist: %1</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>not reached</source>
        <translation>nicht erreicht</translation>
    </message>
    <message>
        <source>not tried</source>
        <translation>nicht versucht</translation>
    </message>
    <message>
        <source>passed</source>
        <translation>bestanden</translation>
    </message>
    <message>
        <source>passed with a warning</source>
        <translation>mit Warnung bestanden</translation>
    </message>
    <message>
        <source>running</source>
        <translation>läuft</translation>
    </message>
    <message>
        <source>the network in between</source>
        <translation>das Netz dazwischen</translation>
    </message>
    <message>
        <source>the server</source>
        <translation>der Server</translation>
    </message>
    <message>
        <source>this computer</source>
        <translation>dieser Rechner</translation>
    </message>
</context>
<context>
    <name>QlumDiagnosticChooser</name>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Read the list from the server again</source>
        <translation>Die Liste erneut vom Server lesen</translation>
    </message>
    <message>
        <source>Text to filter the table by</source>
        <translation>Text, nach dem die Tabelle gefiltert wird</translation>
    </message>
    <message>
        <source>reading...</source>
        <translation>wird gelesen...</translation>
    </message>
</context>
<context>
    <name>QlumDiagnosticEndpoints</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Ask &amp;Again</source>
        <translation>Erneut &amp;fragen</translation>
    </message>
    <message>
        <source>Ask the server for its description and its endpoints again</source>
        <translation>Den Server erneut nach seiner Beschreibung und seinen Endpunkten fragen</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>FindServers Response</source>
        <translation>FindServers-Antwort</translation>
    </message>
    <message>
        <source>GetEndpoints Response</source>
        <translation>GetEndpoints-Antwort</translation>
    </message>
    <message>
        <source>Parameter</source>
        <translation>Parameter</translation>
    </message>
    <message>
        <source>Select FindServers or GetEndpoints result:</source>
        <translation>Ergebnis von FindServers oder GetEndpoints wählen:</translation>
    </message>
    <message>
        <source>Select a server or an endpoint to see what is said of it.</source>
        <translation>Einen Server oder Endpunkt wählen, um zu sehen, was über ihn gesagt wird.</translation>
    </message>
    <message>
        <source>The answer is empty.</source>
        <translation>Die Antwort ist leer.</translation>
    </message>
    <message>
        <source>The server did not answer: %1</source>
        <translation>Der Server hat nicht geantwortet: %1</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>reading...</source>
        <translation>wird gelesen...</translation>
    </message>
</context>
<context>
    <name>QlumDiagnosticPanel</name>
    <message>
        <source>%1 (reading...)</source>
        <translation>%1 (wird gelesen...)</translation>
    </message>
    <message>
        <source>&lt;b&gt;Show Certificate&lt;/b&gt;&lt;br&gt;Shows what the selected certificate says.</source>
        <translation>&lt;b&gt;Zertifikat zeigen&lt;/b&gt;&lt;br&gt;Zeigt, was das gewählte Zertifikat sagt.</translation>
    </message>
    <message>
        <source>Show &amp;Certificate</source>
        <translation>&amp;Zertifikat zeigen</translation>
    </message>
    <message>
        <source>Show the selected certificate</source>
        <translation>Das gewählte Zertifikat zeigen</translation>
    </message>
    <message>
        <source>Show what the certificate of the client says</source>
        <translation>Zeigen, was das Zertifikat des Clients sagt</translation>
    </message>
</context>
<context>
    <name>QlumDiagnosticServerPage</name>
    <message>
        <source>%1, as told at connect</source>
        <translation>%1, wie beim Verbinden mitgeteilt</translation>
    </message>
    <message>
        <source>%1, by the settings</source>
        <translation>%1, laut Einstellungen</translation>
    </message>
    <message>
        <source>&amp;Disable...</source>
        <translation>&amp;Ausschalten...</translation>
    </message>
    <message>
        <source>&amp;Enable</source>
        <translation>&amp;Einschalten</translation>
    </message>
    <message>
        <source>Build Info</source>
        <translation>Build-Informationen</translation>
    </message>
    <message>
        <source>Diagnostics are disabled: the server counts nothing.</source>
        <translation>Die Diagnose ist ausgeschaltet: Der Server zählt nichts.</translation>
    </message>
    <message>
        <source>Diagnostics are enabled.</source>
        <translation>Die Diagnose ist eingeschaltet.</translation>
    </message>
    <message>
        <source>Disable diagnostics</source>
        <translation>Diagnose ausschalten</translation>
    </message>
    <message>
        <source>Enable diagnostics</source>
        <translation>Diagnose einschalten</translation>
    </message>
    <message>
        <source>EnabledFlag: %1</source>
        <translation>EnabledFlag: %1</translation>
    </message>
    <message>
        <source>Has the server count what it does, or not. That goes for all its clients, and needs the right to write the server&apos;s EnabledFlag.</source>
        <translation>Lässt den Server zählen, was er tut, oder nicht. Das gilt für alle seine Clients und braucht das Recht, das EnabledFlag des Servers zu schreiben.</translation>
    </message>
    <message>
        <source>Have the server count</source>
        <translation>Den Server zählen lassen</translation>
    </message>
    <message>
        <source>Have the server count no longer</source>
        <translation>Den Server nicht mehr zählen lassen</translation>
    </message>
    <message>
        <source>Parameter</source>
        <translation>Parameter</translation>
    </message>
    <message>
        <source>Per Second</source>
        <translation>Pro Sekunde</translation>
    </message>
    <message>
        <source>Server Capabilities</source>
        <translation>Fähigkeiten des Servers</translation>
    </message>
    <message>
        <source>Server Diagnostics</source>
        <translation>Serverdiagnose</translation>
    </message>
    <message>
        <source>Server Redundancy</source>
        <translation>Serverredundanz</translation>
    </message>
    <message>
        <source>Server Status</source>
        <translation>Serverstatus</translation>
    </message>
    <message>
        <source>Used by This Client</source>
        <translation>Von diesem Client genutzt</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>no limit</source>
        <translation>keine Grenze</translation>
    </message>
</context>
<context>
    <name>QlumDifferenceModel</name>
    <message>
        <source>%1 (another node id)</source>
        <translation>%1 (andere NodeId)</translation>
    </message>
    <message>
        <source>After</source>
        <translation>Nachher</translation>
    </message>
    <message>
        <source>Before</source>
        <translation>Vorher</translation>
    </message>
    <message>
        <source>Before: %1</source>
        <translation>Vorher: %1</translation>
    </message>
    <message>
        <source>Browse Path</source>
        <translation>Pfad</translation>
    </message>
    <message>
        <source>Changed</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Changed, with another type</source>
        <translation>Geändert, mit anderem Typ</translation>
    </message>
    <message>
        <source>Difference</source>
        <translation>Unterschied</translation>
    </message>
    <message>
        <source>Display Name</source>
        <translation>Anzeigename</translation>
    </message>
    <message>
        <source>Gone</source>
        <translation>Weg</translation>
    </message>
    <message>
        <source>Namespace: %1</source>
        <translation>Namensraum: %1</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Neu</translation>
    </message>
    <message>
        <source>Node Id</source>
        <translation>NodeId</translation>
    </message>
    <message>
        <source>Other status</source>
        <translation>Anderer Status</translation>
    </message>
    <message>
        <source>Same</source>
        <translation>Gleich</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Source Time After</source>
        <translation>Quellzeit nachher</translation>
    </message>
    <message>
        <source>Source Time Before</source>
        <translation>Quellzeit vorher</translation>
    </message>
    <message>
        <source>Status After</source>
        <translation>Status nachher</translation>
    </message>
    <message>
        <source>Status Before</source>
        <translation>Status vorher</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
</context>
<context>
    <name>QlumDifferenceTableModel</name>
    <message>
        <source>Parameter</source>
        <translation>Parameter</translation>
    </message>
    <message>
        <source>Remark</source>
        <translation>Bemerkung</translation>
    </message>
    <message>
        <source>The device has</source>
        <translation>Das Gerät hat</translation>
    </message>
</context>
<context>
    <name>QlumDiscoveryLookup</name>
    <message>
        <source>Looking for servers at %1</source>
        <translation>Server unter %1 suchen</translation>
    </message>
</context>
<context>
    <name>QlumDiscoveryModel</name>
    <message numerus="yes">
        <source>%n server(s)</source>
        <translation>
            <numerusform>%n Server</numerusform>
            <numerusform>%n Server</numerusform>
        </translation>
    </message>
    <message>
        <source>(without a name)</source>
        <translation>(ohne Namen)</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>Addresses of servers that you have used, the latest first.</source>
        <translation>Adressen von Servern, die Sie benutzt haben, die neuesten zuerst.</translation>
    </message>
    <message>
        <source>Asking...</source>
        <translation>Wird gefragt...</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Custom Discovery</source>
        <translation>Eigene Discovery</translation>
    </message>
    <message>
        <source>Discovery servers that you have entered. They are kept for the next time.</source>
        <translation>Discovery-Server, die Sie eingegeben haben. Sie werden für das nächste Mal behalten.</translation>
    </message>
    <message>
        <source>Global Discovery Servers</source>
        <translation>Globale Discovery-Server</translation>
    </message>
    <message>
        <source>Global discovery servers that you have entered, whose directory is read.</source>
        <translation>Globale Discovery-Server, die Sie eingegeben haben und deren Verzeichnis gelesen wird.</translation>
    </message>
    <message>
        <source>It knows no servers.</source>
        <translation>Er kennt keine Server.</translation>
    </message>
    <message>
        <source>Local</source>
        <translation>Lokal</translation>
    </message>
    <message>
        <source>More than %1 servers, of which %1 are shown.</source>
        <translation>Mehr als %1 Server, davon werden %1 gezeigt.</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>Netzwerk</translation>
    </message>
    <message>
        <source>None yet</source>
        <translation>Noch keine</translation>
    </message>
    <message>
        <source>Recently used</source>
        <translation>Zuletzt benutzt</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Servers that known discovery servers have heard of in their networks.</source>
        <translation>Server, von denen bekannte Discovery-Server in ihren Netzen gehört haben.</translation>
    </message>
    <message>
        <source>Servers that the discovery server of this machine knows, at port 4840.</source>
        <translation>Server, die der Discovery-Server dieses Rechners kennt, an Port 4840.</translation>
    </message>
    <message>
        <source>This address cannot be used here.</source>
        <translation>Diese Adresse kann hier nicht verwendet werden.</translation>
    </message>
</context>
<context>
    <name>QlumDiscoveryView</name>
    <message>
        <source>%1 addresses are kept, and no more.</source>
        <translation>%1 Adressen werden behalten, mehr nicht.</translation>
    </message>
    <message>
        <source>%1 of %2 look-ups are done.</source>
        <translation>%1 von %2 Abfragen sind fertig.</translation>
    </message>
    <message>
        <source>&amp;Add...</source>
        <translation>Hinzu&amp;fügen...</translation>
    </message>
    <message>
        <source>&lt;b&gt;Servers that can be found&lt;/b&gt;&lt;br&gt;Open a row to ask for its servers; press a server to ask it for its endpoints.</source>
        <translation>&lt;b&gt;Auffindbare Server&lt;/b&gt;&lt;br&gt;Öffnen Sie eine Zeile, um nach ihren Servern zu fragen; klicken Sie auf einen Server, um ihn nach seinen Endpunkten zu fragen.</translation>
    </message>
    <message>
        <source>Add Discovery Server</source>
        <translation>Discovery-Server hinzufügen</translation>
    </message>
    <message>
        <source>Add Global Discovery Server</source>
        <translation>Globalen Discovery-Server hinzufügen</translation>
    </message>
    <message>
        <source>Ask again at the selected row</source>
        <translation>Bei der gewählten Zeile erneut fragen</translation>
    </message>
    <message>
        <source>End the look-ups that are under way</source>
        <translation>Die laufenden Abfragen beenden</translation>
    </message>
    <message>
        <source>Enter the address of a discovery server; it is kept for the next time</source>
        <translation>Die Adresse eines Discovery-Servers eingeben; sie wird für das nächste Mal behalten</translation>
    </message>
    <message>
        <source>Forget the address that is selected</source>
        <translation>Die gewählte Adresse vergessen</translation>
    </message>
    <message>
        <source>Re&amp;fresh</source>
        <translation>Auffri&amp;schen</translation>
    </message>
    <message>
        <source>Re&amp;move</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Servers that can be found</source>
        <translation>Auffindbare Server</translation>
    </message>
    <message>
        <source>Sto&amp;p</source>
        <translation>Anh&amp;alten</translation>
    </message>
    <message>
        <source>This is no address of a server that can be kept.</source>
        <translation>Das ist keine Serveradresse, die behalten werden kann.</translation>
    </message>
    <message>
        <source>URL, without user name and password:</source>
        <translation>URL ohne Benutzernamen und Kennwort:</translation>
    </message>
    <message>
        <source>servers</source>
        <translation>Server</translation>
    </message>
</context>
<context>
    <name>QlumDoctor</name>
    <message>
        <source>%1 Set the clock that is wrong.</source>
        <translation>%1 Stellen Sie die Uhr, die falsch geht.</translation>
    </message>
    <message>
        <source>%1 addresses, the first is %2</source>
        <translation>%1 Adressen, die erste ist %2</translation>
    </message>
    <message>
        <source>%1 at %2 (log-in: %3)</source>
        <translation>%1 unter %2 (Anmeldung: %3)</translation>
    </message>
    <message numerus="yes">
        <source>%n days</source>
        <translation>
            <numerusform>%n Tag</numerusform>
            <numerusform>%n Tage</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n endpoints; &apos;%1&apos; is among them</source>
        <translation>
            <numerusform>%n Endpunkt; „%1“ ist darunter</numerusform>
            <numerusform>%n Endpunkte; „%1“ ist darunter</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n hours</source>
        <translation>
            <numerusform>%n Stunde</numerusform>
            <numerusform>%n Stunden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n Minute</numerusform>
            <numerusform>%n Minuten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n seconds</source>
        <translation>
            <numerusform>%n Sekunde</numerusform>
            <numerusform>%n Sekunden</numerusform>
        </translation>
    </message>
    <message>
        <source>A connect asks about it. Ask the server&apos;s administrator whether it was replaced.</source>
        <translation>Beim Verbinden wird danach gefragt. Fragen Sie den Administrator des Servers, ob es ersetzt wurde.</translation>
    </message>
    <message>
        <source>A secured connection needs one. Choose another endpoint, or have the server&apos;s administrator look at it.</source>
        <translation>Eine gesicherte Verbindung braucht eines. Wählen Sie einen anderen Endpunkt, oder lassen Sie den Administrator des Servers danach sehen.</translation>
    </message>
    <message>
        <source>An unsecured channel, to ask for the endpoints, is open.</source>
        <translation>Ein ungesicherter Kanal, um nach den Endpunkten zu fragen, ist offen.</translation>
    </message>
    <message>
        <source>Application URI: %1</source>
        <translation>Anwendungs-URI: %1</translation>
    </message>
    <message>
        <source>At port %1 somebody answers who speaks another protocol.</source>
        <translation>An Port %1 antwortet jemand, der ein anderes Protokoll spricht.</translation>
    </message>
    <message>
        <source>Buffers: it receives %1 and sends %2 bytes</source>
        <translation>Puffer: empfängt %1 und sendet %2 Bytes</translation>
    </message>
    <message>
        <source>Cancelled.</source>
        <translation>Abgebrochen.</translation>
    </message>
    <message>
        <source>Certificate: %1</source>
        <translation>Zertifikat: %1</translation>
    </message>
    <message>
        <source>Check the cable, the network settings and the VPN.</source>
        <translation>Prüfen Sie Kabel, Netzwerkeinstellungen und VPN.</translation>
    </message>
    <message>
        <source>Check the clocks of both computers, or have the certificate renewed.</source>
        <translation>Prüfen Sie die Uhren beider Rechner, oder lassen Sie das Zertifikat erneuern.</translation>
    </message>
    <message>
        <source>Check the files of the identity in the properties of the server.</source>
        <translation>Prüfen Sie die Dateien der Identität in den Eigenschaften des Servers.</translation>
    </message>
    <message>
        <source>Check the network and the VPN, or dial the address instead.</source>
        <translation>Prüfen Sie Netz und VPN, oder wählen Sie stattdessen die Adresse an.</translation>
    </message>
    <message>
        <source>Check the port: something else may listen there. Many servers use 4840.</source>
        <translation>Prüfen Sie den Port: Etwas anderes lauscht vielleicht dort. Viele Server verwenden 4840.</translation>
    </message>
    <message>
        <source>Check the spelling, the name server and the VPN, or dial the address instead.</source>
        <translation>Prüfen Sie Schreibweise, Nameserver und VPN, oder wählen Sie stattdessen die Adresse an.</translation>
    </message>
    <message>
        <source>Choose an endpoint that encrypts, or enter the password here to send it all the same.</source>
        <translation>Wählen Sie einen verschlüsselnden Endpunkt, oder geben Sie das Kennwort hier ein, um es trotzdem zu senden.</translation>
    </message>
    <message>
        <source>Choose one of the endpoints that it offers.</source>
        <translation>Wählen Sie einen der Endpunkte, die er anbietet.</translation>
    </message>
    <message>
        <source>Compare its thumbprint with what the server&apos;s administrator says, then trust it.</source>
        <translation>Vergleichen Sie seinen Fingerabdruck mit dem, was der Administrator des Servers sagt, und vertrauen Sie ihm dann.</translation>
    </message>
    <message>
        <source>Connected to %1</source>
        <translation>Verbunden mit %1</translation>
    </message>
    <message>
        <source>Connection diagnosis: %1</source>
        <translation>Verbindungsdiagnose: %1</translation>
    </message>
    <message>
        <source>Correct it in the properties of the server.</source>
        <translation>Korrigieren Sie das in den Eigenschaften des Servers.</translation>
    </message>
    <message>
        <source>Create one in the certificate manager.</source>
        <translation>Erstellen Sie eines in der Zertifikatsverwaltung.</translation>
    </message>
    <message>
        <source>Diagnosing the connection to %1</source>
        <translation>Verbindung mit %1 diagnostizieren</translation>
    </message>
    <message>
        <source>Dial one of the hosts that it names, have it renewed for this one, or accept it.</source>
        <translation>Wählen Sie einen der Hosts an, die es nennt, lassen Sie es für diesen erneuern, oder nehmen Sie es an.</translation>
    </message>
    <message>
        <source>Dial one of the hosts that it names, or have it renewed for this one.</source>
        <translation>Wählen Sie einen der Hosts an, die es nennt, oder lassen Sie es für diesen erneuern.</translation>
    </message>
    <message>
        <source>Do not use it. The server&apos;s administrator has to replace it.</source>
        <translation>Verwenden Sie es nicht. Der Administrator des Servers muss es ersetzen.</translation>
    </message>
    <message>
        <source>Enter it to try this step, too.</source>
        <translation>Geben Sie es ein, um auch diesen Schritt zu versuchen.</translation>
    </message>
    <message>
        <source>Export it and have the server&apos;s administrator trust it; most servers keep what they have refused.</source>
        <translation>Exportieren Sie es und lassen Sie ihm vom Administrator des Servers vertrauen; die meisten Server bewahren Abgelehntes auf.</translation>
    </message>
    <message>
        <source>HTTPS has no greeting; its TLS belongs to the next step.</source>
        <translation>HTTPS hat keine Begrüßung; sein TLS gehört zum nächsten Schritt.</translation>
    </message>
    <message>
        <source>He was tried here only. Enter him in the properties of the server to keep him.</source>
        <translation>Er wurde nur hier versucht. Tragen Sie ihn in den Eigenschaften des Servers ein, um ihn zu behalten.</translation>
    </message>
    <message>
        <source>Host &apos;%1&apos; was reached, but nobody listens at its port %2.</source>
        <translation>Host „%1“ wurde erreicht, aber an Port %2 lauscht niemand.</translation>
    </message>
    <message>
        <source>Issued by: %1</source>
        <translation>Ausgestellt von: %1</translation>
    </message>
    <message>
        <source>It was accepted for this diagnosis. A connect asks about it.</source>
        <translation>Für diese Diagnose wurde es angenommen. Beim Verbinden wird danach gefragt.</translation>
    </message>
    <message>
        <source>Keep to the host that was dialled, if that is the server that is meant.</source>
        <translation>Bleiben Sie beim angewählten Host, wenn es der gemeinte Server ist.</translation>
    </message>
    <message>
        <source>Longest message: %1 bytes in %2 chunks (0: no limit)</source>
        <translation>Längste Nachricht: %1 Bytes in %2 Chunks (0: keine Grenze)</translation>
    </message>
    <message>
        <source>Look at the certificate; each finding says what is wrong.</source>
        <translation>Sehen Sie das Zertifikat an; jeder Befund sagt, was falsch ist.</translation>
    </message>
    <message>
        <source>Made for hosts: %1</source>
        <translation>Ausgestellt für Hosts: %1</translation>
    </message>
    <message>
        <source>Most likely it does not trust it. Export it and have the server&apos;s administrator trust it; most servers keep what they have refused.</source>
        <translation>Sehr wahrscheinlich vertraut er ihm nicht. Exportieren Sie es und lassen Sie ihm vom Administrator des Servers vertrauen; die meisten Server bewahren Abgelehntes auf.</translation>
    </message>
    <message>
        <source>No password is known here, so nobody was logged in.</source>
        <translation>Hier ist kein Kennwort bekannt, daher wurde niemand angemeldet.</translation>
    </message>
    <message>
        <source>Nobody has trusted the server&apos;s certificate here yet.</source>
        <translation>Dem Serverzertifikat hat hier noch niemand vertraut.</translation>
    </message>
    <message>
        <source>One address: %1</source>
        <translation>Eine Adresse: %1</translation>
    </message>
    <message>
        <source>Port %1 hangs up when it is greeted.</source>
        <translation>Port %1 legt auf, wenn er begrüßt wird.</translation>
    </message>
    <message>
        <source>Port %1 is open, but nobody answers the greeting.</source>
        <translation>Port %1 ist offen, aber niemand antwortet auf die Begrüßung.</translation>
    </message>
    <message>
        <source>Port %2 of host &apos;%1&apos; gives no answer at all.</source>
        <translation>Port %2 von Host „%1“ antwortet überhaupt nicht.</translation>
    </message>
    <message>
        <source>Server Node</source>
        <translation>Serverknoten</translation>
    </message>
    <message>
        <source>Set the clock that is wrong: certificates and times of values depend on it.</source>
        <translation>Stellen Sie die Uhr, die falsch geht: Zertifikate und Zeiten von Werten hängen davon ab.</translation>
    </message>
    <message>
        <source>Somebody may answer in the server&apos;s place. Do not go on before its administrator has looked at it.</source>
        <translation>Jemand antwortet vielleicht an Stelle des Servers. Machen Sie nicht weiter, bevor sein Administrator nachgesehen hat.</translation>
    </message>
    <message>
        <source>Start the server, or correct the port; a firewall may answer so, too.</source>
        <translation>Starten Sie den Server, oder korrigieren Sie den Port; auch eine Firewall kann so antworten.</translation>
    </message>
    <message>
        <source>TLS is set up, its certificate passes.</source>
        <translation>TLS steht, das Zertifikat ist in Ordnung.</translation>
    </message>
    <message>
        <source>The URL is not one of opc.tcp or https with a host.</source>
        <translation>Die URL ist keine mit opc.tcp oder https und einem Host.</translation>
    </message>
    <message>
        <source>The answer begins with: %1</source>
        <translation>Die Antwort beginnt mit: %1</translation>
    </message>
    <message>
        <source>The certificate cannot be read.</source>
        <translation>Das Zertifikat kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The certificate of the HTTPS connection does not pass: %1.</source>
        <translation>Das Zertifikat der HTTPS-Verbindung besteht die Prüfung nicht: %1.</translation>
    </message>
    <message>
        <source>The connection is not secured, so nothing depends on the certificate.</source>
        <translation>Die Verbindung ist nicht gesichert, also hängt nichts vom Zertifikat ab.</translation>
    </message>
    <message>
        <source>The connection is not secured; the server asks for no certificate.</source>
        <translation>Die Verbindung ist nicht gesichert; der Server verlangt kein Zertifikat.</translation>
    </message>
    <message>
        <source>The endpoint names the host &apos;%1&apos;, dialled is &apos;%2&apos;</source>
        <translation>Der Endpunkt nennt den Host „%1“, angewählt ist „%2“</translation>
    </message>
    <message>
        <source>The endpoint takes: %1</source>
        <translation>Der Endpunkt nimmt an: %1</translation>
    </message>
    <message>
        <source>The host is off, or a firewall in between drops the connection.</source>
        <translation>Der Host ist aus, oder eine Firewall dazwischen verwirft die Verbindung.</translation>
    </message>
    <message>
        <source>The name server did not answer for host &apos;%1&apos;.</source>
        <translation>Der Nameserver hat für Host „%1“ nicht geantwortet.</translation>
    </message>
    <message>
        <source>The password could be read on its way, and was not sent.</source>
        <translation>Das Kennwort könnte unterwegs gelesen werden und wurde nicht gesendet.</translation>
    </message>
    <message>
        <source>The server does not accept our certificate (%1).</source>
        <translation>Der Server nimmt unser Zertifikat nicht an (%1).</translation>
    </message>
    <message>
        <source>The server hangs, or it is none of OPC UA. Restart it, or correct the port.</source>
        <translation>Der Server hängt, oder es ist keiner für OPC UA. Starten Sie ihn neu, oder korrigieren Sie den Port.</translation>
    </message>
    <message>
        <source>The server has made a session.</source>
        <translation>Der Server hat eine Sitzung angelegt.</translation>
    </message>
    <message>
        <source>The server has opened a secured channel with our certificate.</source>
        <translation>Der Server hat mit unserem Zertifikat einen gesicherten Kanal geöffnet.</translation>
    </message>
    <message>
        <source>The server hung up when it saw our certificate.</source>
        <translation>Der Server hat aufgelegt, als er unser Zertifikat sah.</translation>
    </message>
    <message>
        <source>The server lets the user in: %1</source>
        <translation>Der Server lässt den Benutzer ein: %1</translation>
    </message>
    <message>
        <source>The server names the host &apos;%1&apos;, which nobody knows here.</source>
        <translation>Der Server nennt den Host „%1“, den hier niemand kennt.</translation>
    </message>
    <message>
        <source>The server offers no endpoint with what the settings ask for: %1.</source>
        <translation>Der Server bietet keinen Endpunkt mit dem, was die Einstellungen verlangen: %1.</translation>
    </message>
    <message>
        <source>The server says: %1</source>
        <translation>Der Server sagt: %1</translation>
    </message>
    <message>
        <source>The server shows no certificate.</source>
        <translation>Der Server zeigt kein Zertifikat.</translation>
    </message>
    <message>
        <source>The server speaks OPC UA, protocol version %1</source>
        <translation>Der Server spricht OPC UA, Protokollversion %1</translation>
    </message>
    <message>
        <source>The server takes our certificate, or our time, for one that is not valid now.</source>
        <translation>Der Server hält unser Zertifikat oder unsere Uhrzeit für derzeit ungültig.</translation>
    </message>
    <message>
        <source>The server&apos;s certificate does not pass: %1.</source>
        <translation>Das Serverzertifikat besteht die Prüfung nicht: %1.</translation>
    </message>
    <message>
        <source>The server&apos;s certificate is made for other hosts than the one that is dialled.</source>
        <translation>Das Serverzertifikat ist für andere Hosts ausgestellt als den angewählten.</translation>
    </message>
    <message>
        <source>The server&apos;s certificate is not the one that was trusted for it before.</source>
        <translation>Das Serverzertifikat ist nicht das, dem früher für ihn vertraut wurde.</translation>
    </message>
    <message>
        <source>The server&apos;s certificate, or one that it was issued by, is not valid now.</source>
        <translation>Das Serverzertifikat oder eines, von dem es ausgestellt wurde, ist jetzt nicht gültig.</translation>
    </message>
    <message>
        <source>The server&apos;s certificate, or one that it was issued by, was revoked.</source>
        <translation>Das Serverzertifikat oder eines, von dem es ausgestellt wurde, wurde gesperrt.</translation>
    </message>
    <message>
        <source>The server&apos;s clock is %1 ahead of this computer&apos;s.</source>
        <translation>Die Uhr des Servers geht gegenüber diesem Rechner um %1 vor.</translation>
    </message>
    <message>
        <source>The server&apos;s clock is %1 behind this computer&apos;s.</source>
        <translation>Die Uhr des Servers geht gegenüber diesem Rechner um %1 nach.</translation>
    </message>
    <message>
        <source>The user&apos;s certificate or its private key could not be read.</source>
        <translation>Das Zertifikat des Benutzers oder sein privater Schlüssel konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>There is no way to host &apos;%1&apos;.</source>
        <translation>Es gibt keinen Weg zu Host „%1“.</translation>
    </message>
    <message>
        <source>This computer does not know the host &apos;%1&apos;.</source>
        <translation>Dieser Rechner kennt den Host „%1“ nicht.</translation>
    </message>
    <message>
        <source>This computer trusts the server&apos;s certificate.</source>
        <translation>Dieser Rechner vertraut dem Serverzertifikat.</translation>
    </message>
    <message>
        <source>This program has no certificate of its own.</source>
        <translation>Dieses Programm hat kein eigenes Zertifikat.</translation>
    </message>
    <message>
        <source>Thumbprint (SHA1): %1</source>
        <translation>Fingerabdruck (SHA1): %1</translation>
    </message>
    <message>
        <source>Time-out of the session: %1</source>
        <translation>Zeitlimit der Sitzung: %1</translation>
    </message>
    <message>
        <source>Valid from %1 to %2</source>
        <translation>Gültig von %1 bis %2</translation>
    </message>
    <message>
        <source>What the server says of itself does not fit what was asked before (%1).</source>
        <translation>Was der Server über sich sagt, passt nicht zu dem, was vorher erfragt wurde (%1).</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
    <message>
        <source>anonymous</source>
        <translation>anonym</translation>
    </message>
    <message>
        <source>certificate</source>
        <translation>Zertifikat</translation>
    </message>
    <message>
        <source>certificate &apos;%1&apos;</source>
        <translation>Zertifikat „%1“</translation>
    </message>
    <message>
        <source>no log-in at all</source>
        <translation>keine Anmeldung möglich</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>the best policy, %1</source>
        <translation>die beste Richtlinie, %1</translation>
    </message>
    <message>
        <source>token of an issuer</source>
        <translation>Token eines Ausstellers</translation>
    </message>
    <message>
        <source>user name</source>
        <translation>Benutzername</translation>
    </message>
    <message>
        <source>user name &apos;%1&apos;</source>
        <translation>Benutzername „%1“</translation>
    </message>
</context>
<context>
    <name>QlumDoctorDialog</name>
    <message>
        <source>%1 is being tried step by step...</source>
        <translation>%1 wird Schritt für Schritt versucht...</translation>
    </message>
    <message>
        <source>&amp;Export Our Certificate...</source>
        <translation>Unser Zertifikat &amp;exportieren...</translation>
    </message>
    <message>
        <source>&amp;Keep to the Dialled Host</source>
        <translation>Beim angewählten Host &amp;bleiben</translation>
    </message>
    <message>
        <source>&amp;Run Again</source>
        <translation>Noch einmal aus&amp;führen</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>A&amp;nhalten</translation>
    </message>
    <message>
        <source>&lt;b&gt;Details&lt;/b&gt;&lt;br&gt;What was seen in the selected step, who has stopped it, and what helps.</source>
        <translation>&lt;b&gt;Details&lt;/b&gt;&lt;br&gt;Was im gewählten Schritt zu sehen war, wer ihn aufgehalten hat und was hilft.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Steps&lt;/b&gt;&lt;br&gt;Each step of a connect in its order, how it ended, how long it took and what was found. Select one to see its details.</source>
        <translation>&lt;b&gt;Schritte&lt;/b&gt;&lt;br&gt;Jeder Schritt des Verbindens in seiner Reihenfolge, wie er ausging, wie lange er dauerte und was gefunden wurde. Wählen Sie einen, um seine Details zu sehen.</translation>
    </message>
    <message>
        <source>Choose &amp;Endpoint</source>
        <translation>End&amp;punkt wählen</translation>
    </message>
    <message>
        <source>Copies the whole diagnosis as text, for whoever helps; it holds no password</source>
        <translation>Kopiert die ganze Diagnose als Text, für den, der hilft; sie enthält kein Kennwort</translation>
    </message>
    <message>
        <source>Copy &amp;Report</source>
        <translation>Be&amp;richt kopieren</translation>
    </message>
    <message>
        <source>Details of the step</source>
        <translation>Details des Schritts</translation>
    </message>
    <message>
        <source>Diagnosis of %1</source>
        <translation>Diagnose von %1</translation>
    </message>
    <message>
        <source>Does what helps in the step that has failed</source>
        <translation>Tut, was bei dem gescheiterten Schritt hilft</translation>
    </message>
    <message>
        <source>Server&apos;s &amp;Certificate...</source>
        <translation>Server&amp;zertifikat...</translation>
    </message>
    <message>
        <source>Status: %1</source>
        <translation>Status: %1</translation>
    </message>
    <message>
        <source>Steps of the connection</source>
        <translation>Schritte der Verbindung</translation>
    </message>
    <message>
        <source>Stopped by: %1</source>
        <translation>Aufgehalten durch: %1</translation>
    </message>
    <message>
        <source>The server offers nothing that this program supports.</source>
        <translation>Der Server bietet nichts, was dieses Programm unterstützt.</translation>
    </message>
    <message>
        <source>Tries all steps again, or ends the diagnosis</source>
        <translation>Versucht alle Schritte erneut oder beendet die Diagnose</translation>
    </message>
    <message>
        <source>Try Another &amp;User...</source>
        <translation>Anderen Ben&amp;utzer versuchen...</translation>
    </message>
    <message>
        <source>What to do: %1</source>
        <translation>Was zu tun ist: %1</translation>
    </message>
    <message>
        <source>diagnosis</source>
        <translation>Diagnose</translation>
    </message>
</context>
<context>
    <name>QlumDoctorModel</name>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>Schritt</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>What Was Found</source>
        <translation>Was gefunden wurde</translation>
    </message>
</context>
<context>
    <name>QlumDocumentDialog</name>
    <message>
        <source>&amp;Document type:</source>
        <translation>&amp;Dokumenttyp:</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>&lt;b&gt;Add Document&lt;/b&gt;&lt;br&gt;Choose what to open and under which name it stands in the project.</source>
        <translation>&lt;b&gt;Dokument hinzufügen&lt;/b&gt;&lt;br&gt;Wählen Sie, was geöffnet wird und unter welchem Namen es im Projekt steht.</translation>
    </message>
    <message>
        <source>A document with the name &apos;%1&apos; already exists.</source>
        <translation>Ein Dokument mit dem Namen „%1“ existiert bereits.</translation>
    </message>
    <message>
        <source>Add Document</source>
        <translation>Dokument hinzufügen</translation>
    </message>
    <message>
        <source>Description of the document type</source>
        <translation>Beschreibung des Dokumenttyps</translation>
    </message>
    <message>
        <source>Document types</source>
        <translation>Dokumenttypen</translation>
    </message>
    <message>
        <source>Name of the document</source>
        <translation>Name des Dokuments</translation>
    </message>
</context>
<context>
    <name>QlumDocumentTypes</name>
    <message>
        <source>Data Access View</source>
        <translation>Datenzugriff</translation>
    </message>
    <message>
        <source>Data Logger View</source>
        <translation>Datenlogger</translation>
    </message>
    <message>
        <source>Devices View</source>
        <translation>Geräteansicht</translation>
    </message>
    <message>
        <source>Event View</source>
        <translation>Ereignisansicht</translation>
    </message>
    <message>
        <source>GDS View (Push Model)</source>
        <translation>GDS-Ansicht (Push-Modell)</translation>
    </message>
    <message>
        <source>History Trend View</source>
        <translation>Historientrend</translation>
    </message>
    <message>
        <source>Image Viewer</source>
        <translation>Bildbetrachter</translation>
    </message>
    <message>
        <source>Performance View</source>
        <translation>Leistungsmessung</translation>
    </message>
    <message>
        <source>Server Diagnostics View</source>
        <translation>Serverdiagnose</translation>
    </message>
</context>
<context>
    <name>QlumElementCell</name>
    <message>
        <source>%1 (%2 bytes)</source>
        <translation>%1 (%2 Bytes)</translation>
    </message>
</context>
<context>
    <name>QlumEmptyText</name>
    <message>
        <source>No row has what the filter asks for.</source>
        <translation>Keine Zeile enthält, was der Filter verlangt.</translation>
    </message>
</context>
<context>
    <name>QlumEndpoint</name>
    <message>
        <source>Anonymous</source>
        <translation>Anonym</translation>
    </message>
    <message>
        <source>Certificate</source>
        <translation>Zertifikat</translation>
    </message>
    <message>
        <source>Issued token</source>
        <translation>Ausgestelltes Token</translation>
    </message>
    <message>
        <source>Unknown (%1)</source>
        <translation>Unbekannt (%1)</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Benutzername</translation>
    </message>
</context>
<context>
    <name>QlumEndpointChoice</name>
    <message>
        <source>The security mode is not known.</source>
        <translation>Der Sicherheitsmodus ist nicht bekannt.</translation>
    </message>
    <message>
        <source>The security policy &apos;%1&apos; is not supported.</source>
        <translation>Die Sicherheitsrichtlinie „%1“ wird nicht unterstützt.</translation>
    </message>
    <message>
        <source>This transport is not supported.</source>
        <translation>Dieser Transport wird nicht unterstützt.</translation>
    </message>
</context>
<context>
    <name>QlumEndpointFetcher</name>
    <message>
        <source>Asking %1 for its endpoints</source>
        <translation>%1 nach seinen Endpunkten fragen</translation>
    </message>
</context>
<context>
    <name>QlumEndpointModel</name>
    <message>
        <source>%1
%2
Application: %3
Application URI: %4</source>
        <translation>%1
%2
Anwendung: %3
Anwendungs-URI: %4</translation>
    </message>
    <message>
        <source>%1 (not supported)</source>
        <translation>%1 (nicht unterstützt)</translation>
    </message>
    <message>
        <source>Deprecated policy</source>
        <translation>Veraltete Richtlinie</translation>
    </message>
    <message>
        <source>Endpoint URL</source>
        <translation>Endpunkt-URL</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Stufe</translation>
    </message>
    <message>
        <source>Not encrypted</source>
        <translation>Nicht verschlüsselt</translation>
    </message>
    <message>
        <source>Not secured</source>
        <translation>Nicht gesichert</translation>
    </message>
    <message>
        <source>Proposed</source>
        <translation>Vorgeschlagen</translation>
    </message>
    <message>
        <source>Remarks</source>
        <translation>Bemerkungen</translation>
    </message>
    <message>
        <source>Security Mode</source>
        <translation>Sicherheitsmodus</translation>
    </message>
    <message>
        <source>Security Policy</source>
        <translation>Sicherheitsrichtlinie</translation>
    </message>
    <message>
        <source>Transport</source>
        <translation>Transport</translation>
    </message>
    <message>
        <source>User Tokens</source>
        <translation>Benutzertoken</translation>
    </message>
</context>
<context>
    <name>QlumEventModel</name>
    <message>
        <source>%1 (refresh)</source>
        <translation>%1 (Auffrischung)</translation>
    </message>
    <message>
        <source>%1/%2</source>
        <translation>%1/%2</translation>
    </message>
    <message>
        <source>EventQueueOverflowEventType: events were lost</source>
        <translation>EventQueueOverflowEventType: Ereignisse gingen verloren</translation>
    </message>
    <message>
        <source>EventType</source>
        <translation>EventType</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Hoch</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Niedrig</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <source>Server/Object</source>
        <translation>Server/Objekt</translation>
    </message>
    <message>
        <source>Severity</source>
        <translation>Schweregrad</translation>
    </message>
    <message>
        <source>SourceName</source>
        <translation>SourceName</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
</context>
<context>
    <name>QlumEventPlugin</name>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>&amp;Discard the oldest</source>
        <translation>&amp;Das älteste verwerfen</translation>
    </message>
    <message>
        <source>&amp;Events</source>
        <translation>&amp;Ereignisse</translation>
    </message>
    <message>
        <source>&amp;Most events in the log:</source>
        <translation>&amp;Höchstzahl Ereignisse in der Liste:</translation>
    </message>
    <message>
        <source>&amp;Publishing interval:</source>
        <translation>&amp;Sendeintervall:</translation>
    </message>
    <message>
        <source>&amp;Queue size:</source>
        <translation>&amp;Warteschlange:</translation>
    </message>
    <message>
        <source>&amp;Sampling interval:</source>
        <translation>&amp;Abtastintervall:</translation>
    </message>
    <message>
        <source>A condition that waits for an answer opens a window.</source>
        <translation>Eine Bedingung, die auf Antwort wartet, öffnet ein Fenster.</translation>
    </message>
    <message>
        <source>A&amp;nswers to a question:</source>
        <translation>A&amp;ntworten auf eine Frage:</translation>
    </message>
    <message>
        <source>Events that a server keeps until it can send them. The largest number asks for as many as it can.</source>
        <translation>Ereignisse, die ein Server aufbewahrt, bis er sie senden kann. Die größte Zahl verlangt so viele, wie er kann.</translation>
    </message>
    <message>
        <source>Historical events in an &amp;answer:</source>
        <translation>Historische Ereignisse je &amp;Antwort:</translation>
    </message>
    <message>
        <source>How many a server sends at a time; 0 leaves it to the server.</source>
        <translation>Wie viele ein Server auf einmal sendet; 0 überlässt es dem Server.</translation>
    </message>
    <message>
        <source>How often a server is asked for more historical events.</source>
        <translation>Wie oft ein Server um weitere historische Ereignisse gebeten wird.</translation>
    </message>
    <message>
        <source>How often a server may report events.</source>
        <translation>Wie oft ein Server Ereignisse melden darf.</translation>
    </message>
    <message>
        <source>Sent with every notifier; most servers take no notice of it.</source>
        <translation>Wird mit jedem Notifier gesendet; die meisten Server beachten es nicht.</translation>
    </message>
    <message>
        <source>Show &amp;empty fields</source>
        <translation>&amp;Leere Felder zeigen</translation>
    </message>
    <message>
        <source>Show &amp;windows of conditions that ask</source>
        <translation>&amp;Fenster fragender Bedingungen zeigen</translation>
    </message>
    <message>
        <source>Show the da&amp;te</source>
        <translation>Das Da&amp;tum zeigen</translation>
    </message>
    <message>
        <source>The details list the fields that an event does not have, too.</source>
        <translation>Die Details zeigen auch die Felder, die ein Ereignis nicht hat.</translation>
    </message>
    <message>
        <source>This document type can be used to subscribe to events and alarms of the UA server. It supports the selection of event fields and can acknowledge and confirm alarms. It also supports reading of historical event data for a given time period.</source>
        <translation>Mit diesem Dokumenttyp lassen sich Ereignisse und Alarme des UA-Servers abonnieren. Ereignisfelder sind wählbar, Alarme können quittiert und bestätigt werden. Auch historische Ereignisse eines Zeitraums lassen sich lesen.</translation>
    </message>
    <message>
        <source>Times of events have the date, too.</source>
        <translation>Zeiten von Ereignissen haben auch das Datum.</translation>
    </message>
    <message>
        <source>When there are more the oldest go.</source>
        <translation>Sind es mehr, fallen die ältesten weg.</translation>
    </message>
    <message>
        <source>Which events a server gives up when its queue is full.</source>
        <translation>Welche Ereignisse ein Server aufgibt, wenn seine Warteschlange voll ist.</translation>
    </message>
</context>
<context>
    <name>QlumEventTypeModel</name>
    <message>
        <source>Event fields</source>
        <translation>Ereignisfelder</translation>
    </message>
    <message>
        <source>Path</source>
        <translation>Pfad</translation>
    </message>
</context>
<context>
    <name>QlumEventTypes</name>
    <message>
        <source>Reading event types</source>
        <translation>Ereignistypen lesen</translation>
    </message>
    <message>
        <source>The reading failed; the log says more.</source>
        <translation>Das Lesen ist fehlgeschlagen; mehr steht im Protokoll.</translation>
    </message>
    <message>
        <source>The reading was cancelled.</source>
        <translation>Das Lesen wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The server is not connected.</source>
        <translation>Der Server ist nicht verbunden.</translation>
    </message>
    <message>
        <source>the server has more than the settings let this program read</source>
        <translation>der Server hat mehr, als die Einstellungen dieses Programm lesen lassen</translation>
    </message>
</context>
<context>
    <name>QlumEventWhere</name>
    <message>
        <source>not %1</source>
        <translation>nicht %1</translation>
    </message>
    <message>
        <source>of type %1</source>
        <translation>vom Typ %1</translation>
    </message>
</context>
<context>
    <name>QlumEventWidget</name>
    <message>
        <source>%1 &apos;%2&apos; returned %3</source>
        <translation>%1 „%2“ ergab %3</translation>
    </message>
    <message>
        <source>%1 does not refresh its conditions (%2). Alarms are listed as they are reported; those of before stay marked.</source>
        <translation>%1 frischt seine Bedingungen nicht auf (%2). Alarme werden aufgelistet, wie sie gemeldet werden; die früheren bleiben gekennzeichnet.</translation>
    </message>
    <message>
        <source>%1 failed for %2 of %3 conditions.</source>
        <translation>%1 ist bei %2 von %3 Bedingungen fehlgeschlagen.</translation>
    </message>
    <message>
        <source>%1 failed: %2</source>
        <translation>%1 fehlgeschlagen: %2</translation>
    </message>
    <message>
        <source>%1 high</source>
        <translation>%1 hoch</translation>
    </message>
    <message>
        <source>%1 low</source>
        <translation>%1 niedrig</translation>
    </message>
    <message>
        <source>%1 medium</source>
        <translation>%1 mittel</translation>
    </message>
    <message>
        <source>%1; the log has no room for the oldest %2</source>
        <translation>%1; für die ältesten %2 hat das Protokoll keinen Platz</translation>
    </message>
    <message numerus="yes">
        <source>%n history(s) could not be read.</source>
        <translation>
            <numerusform>%n Historie konnte nicht gelesen werden.</numerusform>
            <numerusform>%n Historien konnten nicht gelesen werden.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Acknowledge</source>
        <translation>&amp;Quittieren</translation>
    </message>
    <message>
        <source>&amp;Autoscroll</source>
        <translation>&amp;Mitlaufen</translation>
    </message>
    <message>
        <source>&amp;Clear</source>
        <translation>&amp;Leeren</translation>
    </message>
    <message>
        <source>&amp;Confirm</source>
        <translation>Be&amp;stätigen</translation>
    </message>
    <message>
        <source>&amp;Disable</source>
        <translation>&amp;Deaktivieren</translation>
    </message>
    <message>
        <source>&amp;Enable</source>
        <translation>Akti&amp;vieren</translation>
    </message>
    <message>
        <source>&amp;End:</source>
        <translation>&amp;Ende:</translation>
    </message>
    <message>
        <source>&amp;Filter Here</source>
        <translation>Hier &amp;filtern</translation>
    </message>
    <message>
        <source>&amp;Hide Refreshed</source>
        <translation>&amp;Aufgefrischte verbergen</translation>
    </message>
    <message>
        <source>&amp;Pause</source>
        <translation>&amp;Pause</translation>
    </message>
    <message>
        <source>&amp;Remove Monitored Item</source>
        <translation>Überwachtes Element &amp;entfernen</translation>
    </message>
    <message>
        <source>&amp;Show Not Retained</source>
        <translation>Nicht aufbewahrte &amp;zeigen</translation>
    </message>
    <message>
        <source>&amp;Unshelve</source>
        <translation>Zurückstellen auf&amp;heben</translation>
    </message>
    <message>
        <source>&lt;b&gt;Acknowledge All&lt;/b&gt;&lt;br&gt;Acknowledges every alarm that is not, with one comment for all.</source>
        <translation>&lt;b&gt;Alle quittieren&lt;/b&gt;&lt;br&gt;Quittiert jeden noch nicht quittierten Alarm, mit einem Kommentar für alle.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Acknowledge&lt;/b&gt;&lt;br&gt;Acknowledges the selected alarm with a comment.</source>
        <translation>&lt;b&gt;Quittieren&lt;/b&gt;&lt;br&gt;Quittiert den gewählten Alarm mit einem Kommentar.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Add Comment&lt;/b&gt;&lt;br&gt;Adds a comment to the selected alarm.</source>
        <translation>&lt;b&gt;Kommentar hinzufügen&lt;/b&gt;&lt;br&gt;Fügt dem gewählten Alarm einen Kommentar hinzu.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Apply&lt;/b&gt;&lt;br&gt;Asks the servers for the fields that are ticked now.</source>
        <translation>&lt;b&gt;Anwenden&lt;/b&gt;&lt;br&gt;Fragt die Server nach den jetzt angekreuzten Feldern.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Autoscroll&lt;/b&gt;&lt;br&gt;Shows new events as they come.</source>
        <translation>&lt;b&gt;Mitlaufen&lt;/b&gt;&lt;br&gt;Zeigt neue Ereignisse, wie sie kommen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Clear&lt;/b&gt;&lt;br&gt;Removes all events from the log. Alarms stay.</source>
        <translation>&lt;b&gt;Leeren&lt;/b&gt;&lt;br&gt;Entfernt alle Ereignisse aus der Liste. Alarme bleiben.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Condition Refresh&lt;/b&gt;&lt;br&gt;Has the servers send the state of their conditions again.</source>
        <translation>&lt;b&gt;Bedingungen auffrischen&lt;/b&gt;&lt;br&gt;Lässt die Server den Zustand ihrer Bedingungen erneut senden.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Confirm All&lt;/b&gt;&lt;br&gt;Confirms every alarm that is not, with one comment for all.</source>
        <translation>&lt;b&gt;Alle bestätigen&lt;/b&gt;&lt;br&gt;Bestätigt jeden noch nicht bestätigten Alarm, mit einem Kommentar für alle.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Confirm&lt;/b&gt;&lt;br&gt;Confirms the selected alarm with a comment.</source>
        <translation>&lt;b&gt;Bestätigen&lt;/b&gt;&lt;br&gt;Bestätigt den gewählten Alarm mit einem Kommentar.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Disable&lt;/b&gt;&lt;br&gt;Has the server watch the selected condition no longer. It leaves the list.</source>
        <translation>&lt;b&gt;Deaktivieren&lt;/b&gt;&lt;br&gt;Lässt den Server die gewählte Bedingung nicht mehr überwachen. Sie verlässt die Liste.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Enable&lt;/b&gt;&lt;br&gt;Has the server watch the selected condition again.</source>
        <translation>&lt;b&gt;Aktivieren&lt;/b&gt;&lt;br&gt;Lässt den Server die gewählte Bedingung wieder überwachen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Fields as Columns&lt;/b&gt;&lt;br&gt;Shows more fields of the events in columns of their own.</source>
        <translation>&lt;b&gt;Felder als Spalten&lt;/b&gt;&lt;br&gt;Zeigt weitere Felder der Ereignisse in eigenen Spalten.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Hide Refreshed&lt;/b&gt;&lt;br&gt;Hides events that a refresh has sent again.</source>
        <translation>&lt;b&gt;Aufgefrischte verbergen&lt;/b&gt;&lt;br&gt;Verbirgt Ereignisse, die eine Auffrischung erneut gesendet hat.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Pause&lt;/b&gt;&lt;br&gt;Lets the log rest while you read. Events that come meanwhile wait, and follow when you go on.</source>
        <translation>&lt;b&gt;Pause&lt;/b&gt;&lt;br&gt;Lässt die Liste ruhen, während Sie lesen. Inzwischen kommende Ereignisse warten und folgen, wenn Sie weitermachen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Read Event Types&lt;/b&gt;&lt;br&gt;Reads the event types of the server again.</source>
        <translation>&lt;b&gt;Ereignistypen lesen&lt;/b&gt;&lt;br&gt;Liest die Ereignistypen des Servers erneut.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Read History&lt;/b&gt;&lt;br&gt;Reads the events that the servers have kept of that time.</source>
        <translation>&lt;b&gt;Historie lesen&lt;/b&gt;&lt;br&gt;Liest die Ereignisse, die die Server aus dieser Zeit aufbewahrt haben.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Remove Monitored Item&lt;/b&gt;&lt;br&gt;Receives no events of the selected objects any more.</source>
        <translation>&lt;b&gt;Überwachtes Element entfernen&lt;/b&gt;&lt;br&gt;Empfängt keine Ereignisse der gewählten Objekte mehr.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Shelve Once&lt;/b&gt;&lt;br&gt;Keeps the selected alarm quiet until it has gone.</source>
        <translation>&lt;b&gt;Einmal zurückstellen&lt;/b&gt;&lt;br&gt;Hält den gewählten Alarm still, bis er gegangen ist.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Shelve for a Time&lt;/b&gt;&lt;br&gt;Keeps the selected alarm quiet for a time.</source>
        <translation>&lt;b&gt;Auf Zeit zurückstellen&lt;/b&gt;&lt;br&gt;Hält den gewählten Alarm eine Zeit lang still.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Show Not Retained&lt;/b&gt;&lt;br&gt;Lists conditions whose Retain is false, too.</source>
        <translation>&lt;b&gt;Nicht aufbewahrte zeigen&lt;/b&gt;&lt;br&gt;Führt auch Bedingungen auf, deren Retain false ist.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Sound&lt;/b&gt;&lt;br&gt;Gives a sound when an alarm comes up that nobody has acknowledged. What a refresh sends again is silent.</source>
        <translation>&lt;b&gt;Ton&lt;/b&gt;&lt;br&gt;Gibt einen Ton, wenn ein Alarm auftritt, den niemand quittiert hat. Was eine Auffrischung erneut sendet, bleibt stumm.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Suppress&lt;/b&gt;&lt;br&gt;Has the server treat the selected alarm as suppressed, until somebody ends that.</source>
        <translation>&lt;b&gt;Unterdrücken&lt;/b&gt;&lt;br&gt;Lässt den Server den gewählten Alarm als unterdrückt behandeln, bis jemand das beendet.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Unshelve&lt;/b&gt;&lt;br&gt;Ends the shelving of the selected alarm.</source>
        <translation>&lt;b&gt;Zurückstellen aufheben&lt;/b&gt;&lt;br&gt;Beendet das Zurückstellen des gewählten Alarms.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Unsuppress&lt;/b&gt;&lt;br&gt;Ends the suppression of the selected alarm.</source>
        <translation>&lt;b&gt;Unterdrückung aufheben&lt;/b&gt;&lt;br&gt;Beendet die Unterdrückung des gewählten Alarms.</translation>
    </message>
    <message>
        <source>A&amp;pply</source>
        <translation>An&amp;wenden</translation>
    </message>
    <message>
        <source>Acknowledge A&amp;ll</source>
        <translation>A&amp;lle quittieren</translation>
    </message>
    <message>
        <source>Acknowledge every alarm that is not</source>
        <translation>Jeden noch nicht quittierten Alarm quittieren</translation>
    </message>
    <message>
        <source>Acknowledge the selected alarm</source>
        <translation>Den gewählten Alarm quittieren</translation>
    </message>
    <message>
        <source>Acknowledging</source>
        <translation>Quittieren</translation>
    </message>
    <message>
        <source>Add C&amp;omment</source>
        <translation>K&amp;ommentar hinzufügen</translation>
    </message>
    <message>
        <source>Add Comment</source>
        <translation>Kommentar hinzufügen</translation>
    </message>
    <message>
        <source>Add a comment to the selected alarm</source>
        <translation>Dem gewählten Alarm einen Kommentar hinzufügen</translation>
    </message>
    <message>
        <source>Adding a comment</source>
        <translation>Kommentar hinzufügen</translation>
    </message>
    <message>
        <source>Alarms</source>
        <translation>Alarme</translation>
    </message>
    <message>
        <source>Alarms (%1; %2 active, %3 open)</source>
        <translation>Alarme (%1; %2 aktiv, %3 offen)</translation>
    </message>
    <message>
        <source>Any severity</source>
        <translation>Jeder Schweregrad</translation>
    </message>
    <message>
        <source>Ask the servers for the fields that are ticked</source>
        <translation>Die Server nach den angekreuzten Feldern fragen</translation>
    </message>
    <message>
        <source>Call %1 on Condition &apos;%2&apos; returned %3</source>
        <translation>Aufruf von %1 für Bedingung „%2“ ergab %3</translation>
    </message>
    <message>
        <source>Call %1 returned %2</source>
        <translation>Aufruf von %1 ergab %2</translation>
    </message>
    <message>
        <source>Call Acknowledge Failed</source>
        <translation>Aufruf von Acknowledge fehlgeschlagen</translation>
    </message>
    <message>
        <source>Call AddComment Failed</source>
        <translation>Aufruf von AddComment fehlgeschlagen</translation>
    </message>
    <message>
        <source>Call Confirm Failed</source>
        <translation>Aufruf von Confirm fehlgeschlagen</translation>
    </message>
    <message>
        <source>Choose a time and press Read History to see the events that the servers have kept.</source>
        <translation>Wählen Sie eine Zeit und drücken Sie „Historie lesen“, um die Ereignisse zu sehen, die die Server aufbewahrt haben.</translation>
    </message>
    <message>
        <source>Comment Acknowledgement</source>
        <translation>Kommentar zum Quittieren</translation>
    </message>
    <message>
        <source>Comment Confirming</source>
        <translation>Kommentar zum Bestätigen</translation>
    </message>
    <message>
        <source>Con&amp;firm All</source>
        <translation>Alle &amp;bestätigen</translation>
    </message>
    <message>
        <source>Condition Re&amp;fresh</source>
        <translation>Bedingungen auf&amp;frischen</translation>
    </message>
    <message>
        <source>Confirm every alarm that is not</source>
        <translation>Jeden noch nicht bestätigten Alarm bestätigen</translation>
    </message>
    <message>
        <source>Confirm the selected alarm</source>
        <translation>Den gewählten Alarm bestätigen</translation>
    </message>
    <message>
        <source>Confirming</source>
        <translation>Bestätigen</translation>
    </message>
    <message>
        <source>Could not get the event sender&apos;s NodeId</source>
        <translation>Die NodeId des Ereignissenders konnte nicht ermittelt werden</translation>
    </message>
    <message>
        <source>Disable the selected condition</source>
        <translation>Die gewählte Bedingung deaktivieren</translation>
    </message>
    <message>
        <source>Disabling a condition</source>
        <translation>Bedingung deaktivieren</translation>
    </message>
    <message>
        <source>Drop objects from the address space here to receive their events. The Server object passes on those of the whole server.</source>
        <translation>Legen Sie hier Objekte aus dem Adressraum ab, um ihre Ereignisse zu empfangen. Das Objekt Server gibt die des ganzen Servers weiter.</translation>
    </message>
    <message>
        <source>Enable the selected condition</source>
        <translation>Die gewählte Bedingung aktivieren</translation>
    </message>
    <message>
        <source>Enabling a condition</source>
        <translation>Bedingung aktivieren</translation>
    </message>
    <message>
        <source>End the shelving of the selected alarm</source>
        <translation>Das Zurückstellen des gewählten Alarms beenden</translation>
    </message>
    <message>
        <source>End the suppression of the selected alarm</source>
        <translation>Die Unterdrückung des gewählten Alarms beenden</translation>
    </message>
    <message>
        <source>Ending the suppression of an alarm</source>
        <translation>Unterdrückung eines Alarms beenden</translation>
    </message>
    <message>
        <source>Event Details</source>
        <translation>Ereignisdetails</translation>
    </message>
    <message>
        <source>Event Fields</source>
        <translation>Ereignisfelder</translation>
    </message>
    <message>
        <source>Event History</source>
        <translation>Ereignishistorie</translation>
    </message>
    <message>
        <source>Event History (%1)</source>
        <translation>Ereignishistorie (%1)</translation>
    </message>
    <message>
        <source>Event Notifiers</source>
        <translation>Ereignis-Notifier</translation>
    </message>
    <message>
        <source>Event Plugin</source>
        <translation>Plugin Ereignisse</translation>
    </message>
    <message>
        <source>Event View</source>
        <translation>Ereignisansicht</translation>
    </message>
    <message>
        <source>Events</source>
        <translation>Ereignisse</translation>
    </message>
    <message>
        <source>Events (%1)</source>
        <translation>Ereignisse (%1)</translation>
    </message>
    <message>
        <source>Events are shown here as they come. Drop an object on the list of notifiers.</source>
        <translation>Ereignisse erscheinen hier, wie sie kommen. Legen Sie ein Objekt auf der Liste der Notifier ab.</translation>
    </message>
    <message>
        <source>Fields</source>
        <translation>Felder</translation>
    </message>
    <message>
        <source>Fields as &amp;Columns...</source>
        <translation>Felder als &amp;Spalten...</translation>
    </message>
    <message>
        <source>Fields as Columns</source>
        <translation>Felder als Spalten</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>From %1</source>
        <translation>Ab %1</translation>
    </message>
    <message>
        <source>Give a sound when an alarm comes up</source>
        <translation>Einen Ton geben, wenn ein Alarm auftritt</translation>
    </message>
    <message>
        <source>Have the server suppress the selected alarm</source>
        <translation>Den Server den gewählten Alarm unterdrücken lassen</translation>
    </message>
    <message>
        <source>Have the servers send their conditions again</source>
        <translation>Die Server ihre Bedingungen erneut senden lassen</translation>
    </message>
    <message>
        <source>Hide events that a refresh has sent again</source>
        <translation>Ereignisse verbergen, die eine Auffrischung erneut gesendet hat</translation>
    </message>
    <message>
        <source>Keep the selected alarm quiet for a time</source>
        <translation>Den gewählten Alarm eine Zeit lang still halten</translation>
    </message>
    <message>
        <source>Keep the selected alarm quiet until it has gone</source>
        <translation>Den gewählten Alarm still halten, bis er gegangen ist</translation>
    </message>
    <message>
        <source>Least severity shown</source>
        <translation>Niedrigster gezeigter Schweregrad</translation>
    </message>
    <message>
        <source>Let the log rest; events that come meanwhile wait</source>
        <translation>Die Liste ruhen lassen; inzwischen kommende Ereignisse warten</translation>
    </message>
    <message>
        <source>List conditions that their server does not want kept, too</source>
        <translation>Auch Bedingungen auflisten, die ihr Server nicht aufbewahrt haben will</translation>
    </message>
    <message>
        <source>Minutes until the alarm comes back:</source>
        <translation>Minuten, bis der Alarm wiederkommt:</translation>
    </message>
    <message>
        <source>Not acknowledged: %1; not confirmed: %2; inactive: %3; severity unknown: %4</source>
        <translation>Nicht quittiert: %1; nicht bestätigt: %2; inaktiv: %3; Schweregrad unbekannt: %4</translation>
    </message>
    <message>
        <source>Not every notifier asks for what this list needs: %1. Tick these fields and apply.</source>
        <translation>Nicht jeder Notifier fragt nach dem, was diese Liste braucht: %1. Kreuzen Sie diese Felder an und wenden Sie sie an.</translation>
    </message>
    <message>
        <source>Nothing to acknowledge</source>
        <translation>Nichts zu quittieren</translation>
    </message>
    <message>
        <source>Nothing to confirm</source>
        <translation>Nichts zu bestätigen</translation>
    </message>
    <message>
        <source>Object NodeId Not Found</source>
        <translation>NodeId des Objekts nicht gefunden</translation>
    </message>
    <message>
        <source>Paused, %1 waiting</source>
        <translation>Angehalten, %1 warten</translation>
    </message>
    <message>
        <source>Please enter a comment</source>
        <translation>Bitte geben Sie einen Kommentar ein</translation>
    </message>
    <message>
        <source>Please enter the comment</source>
        <translation>Bitte geben Sie den Kommentar ein</translation>
    </message>
    <message>
        <source>Read &amp;History</source>
        <translation>&amp;Historie lesen</translation>
    </message>
    <message>
        <source>Read Event &amp;Types</source>
        <translation>Ereignis&amp;typen lesen</translation>
    </message>
    <message>
        <source>Read a shorter time to see the others.</source>
        <translation>Lesen Sie einen kürzeren Zeitraum, um die anderen zu sehen.</translation>
    </message>
    <message>
        <source>Read the event types of the server again</source>
        <translation>Die Ereignistypen des Servers erneut lesen</translation>
    </message>
    <message>
        <source>Read the events that the servers have kept of that time</source>
        <translation>Die Ereignisse lesen, die die Server aus dieser Zeit aufbewahrt haben</translation>
    </message>
    <message>
        <source>Reading type definitions</source>
        <translation>Typdefinitionen lesen</translation>
    </message>
    <message>
        <source>Receive no events of the selected objects any more</source>
        <translation>Keine Ereignisse der gewählten Objekte mehr empfangen</translation>
    </message>
    <message>
        <source>Remove all events from the log</source>
        <translation>Alle Ereignisse aus der Liste entfernen</translation>
    </message>
    <message>
        <source>S&amp;ound</source>
        <translation>T&amp;on</translation>
    </message>
    <message>
        <source>S&amp;tart:</source>
        <translation>Star&amp;t:</translation>
    </message>
    <message>
        <source>Select a notifier to choose the fields of its events.</source>
        <translation>Wählen Sie einen Notifier, um die Felder seiner Ereignisse zu wählen.</translation>
    </message>
    <message>
        <source>Select an event to see all of its fields.</source>
        <translation>Wählen Sie ein Ereignis, um alle seine Felder zu sehen.</translation>
    </message>
    <message>
        <source>Shelve &amp;Once</source>
        <translation>&amp;Einmal zurückstellen</translation>
    </message>
    <message>
        <source>Shelve for a &amp;Time...</source>
        <translation>Auf &amp;Zeit zurückstellen...</translation>
    </message>
    <message>
        <source>Shelve for a Time</source>
        <translation>Auf Zeit zurückstellen</translation>
    </message>
    <message>
        <source>Shelving an alarm</source>
        <translation>Alarm zurückstellen</translation>
    </message>
    <message>
        <source>Show more fields of the events in columns of their own</source>
        <translation>Weitere Felder der Ereignisse in eigenen Spalten zeigen</translation>
    </message>
    <message>
        <source>Show new events as they come</source>
        <translation>Neue Ereignisse zeigen, wie sie kommen</translation>
    </message>
    <message>
        <source>Show rows of this severity or more</source>
        <translation>Zeilen ab diesem Schweregrad zeigen</translation>
    </message>
    <message>
        <source>Show rows that hold this text</source>
        <translation>Zeilen zeigen, die diesen Text enthalten</translation>
    </message>
    <message>
        <source>Show rows whose source has this in its name</source>
        <translation>Zeilen zeigen, deren Quelle das im Namen hat</translation>
    </message>
    <message>
        <source>Show rows whose type has this in its name</source>
        <translation>Zeilen zeigen, deren Typ das im Namen hat</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>Su&amp;ppress</source>
        <translation>Unterdrü&amp;cken</translation>
    </message>
    <message>
        <source>Suppressing an alarm</source>
        <translation>Alarm unterdrücken</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>The Where page says which.</source>
        <translation>Welche, sagt die Seite „Wo“.</translation>
    </message>
    <message>
        <source>The call of the AddComment method returned %1</source>
        <translation>Der Aufruf der Methode AddComment ergab %1</translation>
    </message>
    <message>
        <source>The call of the acknowledge method returned %1</source>
        <translation>Der Aufruf der Methode Acknowledge ergab %1</translation>
    </message>
    <message>
        <source>The call of the confirm method returned %1</source>
        <translation>Der Aufruf der Methode Confirm ergab %1</translation>
    </message>
    <message>
        <source>The event types of %1 are being read...</source>
        <translation>Die Ereignistypen von %1 werden gelesen...</translation>
    </message>
    <message>
        <source>The event types of %1 are not complete: %2</source>
        <translation>Die Ereignistypen von %1 sind nicht vollständig: %2</translation>
    </message>
    <message>
        <source>The event types of %1 could not be read: %2</source>
        <translation>Die Ereignistypen von %1 konnten nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>The first: %1; the log has them all.</source>
        <translation>Die erste: %1; alle stehen im Protokoll.</translation>
    </message>
    <message>
        <source>The list has the last %1 of %2 historical events.</source>
        <translation>Die Liste enthält die letzten %1 von %2 historischen Ereignissen.</translation>
    </message>
    <message>
        <source>The server refuses the conditions for %1.</source>
        <translation>Der Server lehnt die Bedingungen für %1 ab.</translation>
    </message>
    <message>
        <source>The settings of events say how often a server is asked for more; a shorter time needs fewer answers.</source>
        <translation>Wie oft ein Server nach weiteren gefragt wird, steht in den Einstellungen der Ereignisse; ein kürzerer Zeitraum braucht weniger Antworten.</translation>
    </message>
    <message>
        <source>There are no alarms. Conditions that the monitored objects report are listed here.</source>
        <translation>Es gibt keine Alarme. Bedingungen, die die überwachten Objekte melden, werden hier aufgelistet.</translation>
    </message>
    <message>
        <source>There has been no connection to %1 since %2. Its alarms are those of then.</source>
        <translation>Zu %1 gibt es seit %2 keine Verbindung. Seine Alarme sind die von damals.</translation>
    </message>
    <message>
        <source>There has been no connection to %1 since %2. Its events since then are not here.</source>
        <translation>Seit %2 besteht keine Verbindung zu %1. Seine Ereignisse seitdem fehlen hier.</translation>
    </message>
    <message>
        <source>There is no connection to %1.</source>
        <translation>Es gibt keine Verbindung zu %1.</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>U&amp;nsuppress</source>
        <translation>Unterdrückun&amp;g aufheben</translation>
    </message>
    <message>
        <source>Where</source>
        <translation>Wo</translation>
    </message>
    <message>
        <source>event</source>
        <translation>Ereignis</translation>
    </message>
    <message>
        <source>event fields</source>
        <translation>Ereignisfelder</translation>
    </message>
    <message>
        <source>notifiers</source>
        <translation>Notifier</translation>
    </message>
</context>
<context>
    <name>QlumExportBranchDialog</name>
    <message>
        <source>%1 was not written: %2</source>
        <translation>%1 wurde nicht geschrieben: %2</translation>
    </message>
    <message>
        <source>%L1 nodes were found, %L2 are still to be looked below...</source>
        <translation>%L1 Knoten wurden gefunden, unter %L2 ist noch nachzusehen...</translation>
    </message>
    <message>
        <source>%L1 nodes were written to %2.</source>
        <translation>%L1 Knoten wurden nach %2 geschrieben.</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>A&amp;bbrechen</translation>
    </message>
    <message>
        <source>&amp;Data types, units and access</source>
        <translation>&amp;Datentypen, Einheiten und Zugriff</translation>
    </message>
    <message>
        <source>&amp;Values</source>
        <translation>&amp;Werte</translation>
    </message>
    <message>
        <source>All nodes below &apos;%1&apos; of server &apos;%2&apos; are written to a file: path, node id with the URI of its namespace, class and type, and:</source>
        <translation>Alle Knoten unter „%1“ des Servers „%2“ werden in eine Datei geschrieben: Pfad, NodeId mit der URI ihres Namensraums, Klasse und Typ, und:</translation>
    </message>
    <message>
        <source>Asks for a file, comma separated values or JSON, and begins</source>
        <translation>Fragt nach einer Datei, kommagetrennte Werte oder JSON, und beginnt</translation>
    </message>
    <message>
        <source>Comma separated values (*.csv)</source>
        <translation>Kommagetrennte Werte (*.csv)</translation>
    </message>
    <message>
        <source>D&amp;escriptions</source>
        <translation>B&amp;eschreibungen</translation>
    </message>
    <message>
        <source>E&amp;xport...</source>
        <translation>E&amp;xportieren...</translation>
    </message>
    <message>
        <source>Ends the export; no file is written</source>
        <translation>Beendet den Export; es wird keine Datei geschrieben</translation>
    </message>
    <message>
        <source>Export Branch</source>
        <translation>Zweig exportieren</translation>
    </message>
    <message>
        <source>Exporting a branch</source>
        <translation>Einen Zweig exportieren</translation>
    </message>
    <message>
        <source>Finding the nodes...</source>
        <translation>Knoten werden gesucht...</translation>
    </message>
    <message>
        <source>JSON (*.json)</source>
        <translation>JSON (*.json)</translation>
    </message>
    <message>
        <source>Of %L1 nodes it did not tell what is below.</source>
        <translation>Bei %L1 Knoten sagte er nicht, was darunter ist.</translation>
    </message>
    <message>
        <source>Of %L1 nodes the server did not tell more than their names.</source>
        <translation>Zu %L1 Knoten sagte der Server nicht mehr als ihre Namen.</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>The export failed; the log says more.</source>
        <translation>Der Export ist fehlgeschlagen; mehr steht im Protokoll.</translation>
    </message>
    <message>
        <source>The export was cancelled; no file was written.</source>
        <translation>Der Export wurde abgebrochen; es wurde keine Datei geschrieben.</translation>
    </message>
    <message>
        <source>The server is not connected.</source>
        <translation>Der Server ist nicht verbunden.</translation>
    </message>
    <message>
        <source>They are read from the server, which takes longer</source>
        <translation>Sie werden vom Server gelesen, was länger dauert</translation>
    </message>
    <message>
        <source>Waiting for the connection to come back...</source>
        <translation>Warten, bis die Verbindung zurück ist...</translation>
    </message>
    <message>
        <source>Writing %L1 nodes...</source>
        <translation>%L1 Knoten werden geschrieben...</translation>
    </message>
    <message>
        <source>nodes</source>
        <translation>Knoten</translation>
    </message>
</context>
<context>
    <name>QlumFindNodeForm</name>
    <message>
        <source>&amp;More</source>
        <translation>&amp;Mehr</translation>
    </message>
    <message>
        <source>&amp;Regular expression</source>
        <translation>Re&amp;gulärer Ausdruck</translation>
    </message>
    <message>
        <source>&amp;Unit:</source>
        <translation>&amp;Einheit:</translation>
    </message>
    <message>
        <source>&amp;Writable</source>
        <translation>&amp;Schreibbar</translation>
    </message>
    <message>
        <source>A part of it; * and ? as for the text. Read from the server.</source>
        <translation>Ein Teil davon; * und ? wie beim Text. Wird vom Server gelesen.</translation>
    </message>
    <message>
        <source>A part of the name or id of the type definition; * and ? as for the text</source>
        <translation>Ein Teil des Namens oder der Id der Typdefinition; * und ? wie beim Text</translation>
    </message>
    <message>
        <source>A part of the text; with * for any letters and ? for one, all of it</source>
        <translation>Ein Teil des Texts; mit * für beliebige Zeichen und ? für eines der ganze Text</translation>
    </message>
    <message>
        <source>C&amp;lass:</source>
        <translation>&amp;Klasse:</translation>
    </message>
    <message>
        <source>Capitals and small letters are different in all patterns</source>
        <translation>Groß- und Kleinbuchstaben sind in allen Mustern verschieden</translation>
    </message>
    <message>
        <source>Class</source>
        <translation>Klasse</translation>
    </message>
    <message>
        <source>D&amp;ata type:</source>
        <translation>D&amp;atentyp:</translation>
    </message>
    <message>
        <source>D&amp;escription:</source>
        <translation>&amp;Beschreibung:</translation>
    </message>
    <message>
        <source>Fi&amp;nd:</source>
        <translation>&amp;Suchen:</translation>
    </message>
    <message>
        <source>In</source>
        <translation>In</translation>
    </message>
    <message>
        <source>Match &amp;case</source>
        <translation>Groß/Klein &amp;beachten</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Mehr</translation>
    </message>
    <message>
        <source>Of which class the nodes are</source>
        <translation>Von welcher Klasse die Knoten sind</translation>
    </message>
    <message>
        <source>Only values that the user who is logged in may read</source>
        <translation>Nur Werte, die der angemeldete Benutzer lesen darf</translation>
    </message>
    <message>
        <source>Only values that the user who is logged in may write</source>
        <translation>Nur Werte, die der angemeldete Benutzer schreiben darf</translation>
    </message>
    <message>
        <source>Rea&amp;dable</source>
        <translation>&amp;Lesbar</translation>
    </message>
    <message>
        <source>Reads description, data type, unit and access of all nodes that are found</source>
        <translation>Liest Beschreibung, Datentyp, Einheit und Zugriff aller gefundenen Knoten</translation>
    </message>
    <message>
        <source>S&amp;how for all</source>
        <translation>&amp;Für alle zeigen</translation>
    </message>
    <message>
        <source>Search for what has to be read from the server, which takes longer</source>
        <translation>Nach dem suchen, was vom Server gelesen werden muss; das dauert länger</translation>
    </message>
    <message>
        <source>T&amp;ype definition:</source>
        <translation>T&amp;ypdefinition:</translation>
    </message>
    <message>
        <source>The text is a regular expression; on texts that take it too long it is given up</source>
        <translation>Der Text ist ein regulärer Ausdruck; bei Texten, die zu lange dauern, wird er aufgegeben</translation>
    </message>
    <message>
        <source>These are read from the server, which takes longer.</source>
        <translation>Das wird vom Server gelesen und dauert länger.</translation>
    </message>
    <message>
        <source>Where the text is looked for</source>
        <translation>Wo der Text gesucht wird</translation>
    </message>
    <message>
        <source>any</source>
        <translation>beliebig</translation>
    </message>
    <message>
        <source>in names</source>
        <translation>in Namen</translation>
    </message>
    <message>
        <source>in node ids</source>
        <translation>in NodeIds</translation>
    </message>
    <message>
        <source>in paths</source>
        <translation>in Pfaden</translation>
    </message>
</context>
<context>
    <name>QlumFindNodeView</name>
    <message>
        <source>%1 cannot be shown in the address space window.</source>
        <translation>%1 kann im Adressraumfenster nicht gezeigt werden.</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>%1, %2, %3</source>
        <translation>%1, %2, %3</translation>
    </message>
    <message>
        <source>%1, %2; the address space has changed since: press &quot;Read Again&quot;</source>
        <translation>%1, %2; der Adressraum hat sich seither geändert: drücken Sie „Neu lesen“</translation>
    </message>
    <message numerus="yes">
        <source>%1, %n call(s) not answered in time</source>
        <translation>
            <numerusform>%1, %n Aufruf nicht rechtzeitig beantwortet</numerusform>
            <numerusform>%1, %n Aufrufe nicht rechtzeitig beantwortet</numerusform>
        </translation>
    </message>
    <message>
        <source>%1. %2</source>
        <translation>%1. %2</translation>
    </message>
    <message>
        <source>%1; %2 of %3 looked at</source>
        <translation>%1; %2 von %3 angesehen</translation>
    </message>
    <message numerus="yes">
        <source>%Ln node(s) found</source>
        <translation>
            <numerusform>%Ln Knoten gefunden</numerusform>
            <numerusform>%Ln Knoten gefunden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln node(s) of the server seen</source>
        <translation>
            <numerusform>%Ln Knoten des Servers gesehen</numerusform>
            <numerusform>%Ln Knoten des Servers gesehen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln to look below</source>
        <translation>
            <numerusform>unter %Ln noch nachzusehen</numerusform>
            <numerusform>unter %Ln noch nachzusehen</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>A&amp;bbrechen</translation>
    </message>
    <message>
        <source>&amp;Pause</source>
        <translation>&amp;Pause</translation>
    </message>
    <message>
        <source>&amp;Server:</source>
        <translation>&amp;Server:</translation>
    </message>
    <message>
        <source>Add a server to the project and connect it first.</source>
        <translation>Fügen Sie dem Projekt einen Server hinzu und verbinden Sie ihn zuerst.</translation>
    </message>
    <message>
        <source>Connect &apos;%1&apos; first.</source>
        <translation>Verbinden Sie zuerst „%1“.</translation>
    </message>
    <message>
        <source>Ends the search; what was found stays</source>
        <translation>Beendet die Suche; Gefundenes bleibt</translation>
    </message>
    <message>
        <source>F&amp;ind</source>
        <translation>&amp;Suchen</translation>
    </message>
    <message>
        <source>Forgets what is known of the server&apos;s nodes and reads them again</source>
        <translation>Vergisst, was von den Knoten des Servers bekannt ist, und liest sie neu</translation>
    </message>
    <message>
        <source>Found Nodes</source>
        <translation>Gefundene Knoten</translation>
    </message>
    <message>
        <source>Holds the reading of the server, or lets it go on</source>
        <translation>Hält das Lesen des Servers an oder lässt es weitergehen</translation>
    </message>
    <message>
        <source>It has too many ways to match; make it simpler.</source>
        <translation>Er kann auf zu viele Arten passen; vereinfachen Sie ihn.</translation>
    </message>
    <message>
        <source>No node was found for which all that the fields say is true.</source>
        <translation>Kein Knoten wurde gefunden, für den alle Angaben zutreffen.</translation>
    </message>
    <message>
        <source>Not all nodes were looked at.</source>
        <translation>Nicht alle Knoten wurden angesehen.</translation>
    </message>
    <message>
        <source>Nothing can be searched.</source>
        <translation>Es kann nichts durchsucht werden.</translation>
    </message>
    <message numerus="yes">
        <source>Of %n node(s) the server did not tell what is below.</source>
        <translation>
            <numerusform>Zu %n Knoten sagte der Server nicht, was darunter ist.</numerusform>
            <numerusform>Zu %n Knoten sagte der Server nicht, was darunter ist.</numerusform>
        </translation>
    </message>
    <message>
        <source>Only a part of the nodes was looked at.</source>
        <translation>Nur ein Teil der Knoten wurde angesehen.</translation>
    </message>
    <message>
        <source>Only the first %L1 nodes are shown.</source>
        <translation>Nur die ersten %L1 Knoten werden gezeigt.</translation>
    </message>
    <message>
        <source>Read A&amp;gain</source>
        <translation>&amp;Neu lesen</translation>
    </message>
    <message>
        <source>Root</source>
        <translation>Root</translation>
    </message>
    <message>
        <source>Say what you are looking for, and press &quot;Find&quot;.</source>
        <translation>Geben Sie an, was Sie suchen, und drücken Sie „Suchen“.</translation>
    </message>
    <message>
        <source>Search all nodes of the server, not only this branch</source>
        <translation>Alle Knoten des Servers durchsuchen, nicht nur diesen Zweig</translation>
    </message>
    <message>
        <source>Search for less.</source>
        <translation>Suchen Sie nach weniger.</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Shows the nodes for which all that the fields say is true</source>
        <translation>Zeigt die Knoten, für die alle Angaben zutreffen</translation>
    </message>
    <message numerus="yes">
        <source>The expression was given up on %n text(s).</source>
        <translation>
            <numerusform>Der Ausdruck wurde bei %n Text aufgegeben.</numerusform>
            <numerusform>Der Ausdruck wurde bei %n Texten aufgegeben.</numerusform>
        </translation>
    </message>
    <message>
        <source>The nodes could not be read.</source>
        <translation>Die Knoten konnten nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The regular expression is none.</source>
        <translation>Der reguläre Ausdruck ist keiner.</translation>
    </message>
    <message>
        <source>The search was cancelled.</source>
        <translation>Die Suche wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The server may be disconnected, or the node gone.</source>
        <translation>Der Server ist vielleicht getrennt oder der Knoten weg.</translation>
    </message>
    <message>
        <source>The server that is searched</source>
        <translation>Der Server, der durchsucht wird</translation>
    </message>
    <message>
        <source>There is no server in the project.</source>
        <translation>Im Projekt ist kein Server.</translation>
    </message>
    <message>
        <source>Try &amp;Again</source>
        <translation>&amp;Erneut versuchen</translation>
    </message>
    <message>
        <source>What was known of the server is forgotten: its session has ended.</source>
        <translation>Was vom Server bekannt war, ist vergessen: Seine Sitzung ist zu Ende.</translation>
    </message>
    <message>
        <source>Whole Server</source>
        <translation>Ganzer Server</translation>
    </message>
    <message>
        <source>all nodes</source>
        <translation>alle Knoten</translation>
    </message>
    <message>
        <source>below %1</source>
        <translation>unter %1</translation>
    </message>
    <message>
        <source>held</source>
        <translation>angehalten</translation>
    </message>
    <message>
        <source>nodes</source>
        <translation>Knoten</translation>
    </message>
    <message>
        <source>not all of them</source>
        <translation>nicht alle</translation>
    </message>
    <message>
        <source>read at %1</source>
        <translation>gelesen um %1</translation>
    </message>
    <message>
        <source>reading</source>
        <translation>lesen</translation>
    </message>
    <message>
        <source>searching...</source>
        <translation>wird gesucht...</translation>
    </message>
    <message>
        <source>waiting for the connection</source>
        <translation>warten auf die Verbindung</translation>
    </message>
</context>
<context>
    <name>QlumFolders</name>
    <message>
        <source>/korvanda/tavelin/PKI</source>
        <translation>/korvanda/tavelin/PKI</translation>
    </message>
    <message>
        <source>/korvanda/tavelin/PKI/CA</source>
        <translation>/korvanda/tavelin/PKI/CA</translation>
    </message>
</context>
<context>
    <name>QlumFoundNodeModel</name>
    <message>
        <source>Access</source>
        <translation>Zugriff</translation>
    </message>
    <message>
        <source>Class</source>
        <translation>Klasse</translation>
    </message>
    <message>
        <source>Data Type</source>
        <translation>Datentyp</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Node Id</source>
        <translation>NodeId</translation>
    </message>
    <message>
        <source>Path</source>
        <translation>Pfad</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
</context>
<context>
    <name>QlumGDSPlugin</name>
    <message>
        <source>Manages the certificates and trust lists that a server keeps, through its configuration objects.</source>
        <translation>Verwaltet die Zertifikate und Vertrauenslisten, die ein Server führt, über seine Konfigurationsobjekte.</translation>
    </message>
</context>
<context>
    <name>QlumGivenCertificate</name>
    <message>
        <source>Certificate of the Server</source>
        <translation>Zertifikat des Servers</translation>
    </message>
    <message>
        <source>Certificate of the server</source>
        <translation>Zertifikat des Servers</translation>
    </message>
    <message>
        <source>Certificates (*.der *.cer *.crt *.pem);;All files (*)</source>
        <translation>Zertifikate (*.der *.cer *.crt *.pem);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>Take the certificate that the server shows</source>
        <translation>Das Zertifikat nehmen, das der Server zeigt</translation>
    </message>
    <message>
        <source>Take the server&apos;s certificate from a file</source>
        <translation>Das Serverzertifikat aus einer Datei nehmen</translation>
    </message>
    <message>
        <source>That which the server shows</source>
        <translation>Das, welches der Server zeigt</translation>
    </message>
    <message>
        <source>The certificate cannot be read.</source>
        <translation>Das Zertifikat kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The file &apos;%1&apos; holds no certificate.</source>
        <translation>Die Datei „%1“ enthält kein Zertifikat.</translation>
    </message>
</context>
<context>
    <name>QlumHelpContents</name>
    <message>
        <source>Contents</source>
        <translation>Inhalt</translation>
    </message>
    <message>
        <source>Contents of the manual</source>
        <translation>Inhalt des Handbuchs</translation>
    </message>
    <message>
        <source>Contents, index and search of the manual cannot be read from %1.</source>
        <translation>Inhalt, Index und Suche des Handbuchs können nicht aus %1 gelesen werden.</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Filter of the index</source>
        <translation>Filter des Index</translation>
    </message>
    <message>
        <source>First results</source>
        <translation>Erste Ergebnisse</translation>
    </message>
    <message>
        <source>Index</source>
        <translation>Index</translation>
    </message>
    <message>
        <source>Last results</source>
        <translation>Letzte Ergebnisse</translation>
    </message>
    <message>
        <source>Next results</source>
        <translation>Nächste Ergebnisse</translation>
    </message>
    <message>
        <source>Next search</source>
        <translation>Nächste Suche</translation>
    </message>
    <message>
        <source>Previous results</source>
        <translation>Vorige Ergebnisse</translation>
    </message>
    <message>
        <source>Previous search</source>
        <translation>Vorige Suche</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Words to search the manual for</source>
        <translation>Wörter, nach denen das Handbuch durchsucht wird</translation>
    </message>
</context>
<context>
    <name>QlumHelpViewer</name>
    <message>
        <source>&amp;Back</source>
        <translation>&amp;Zurück</translation>
    </message>
    <message>
        <source>&amp;Contents</source>
        <translation>&amp;Inhalt</translation>
    </message>
    <message>
        <source>&amp;Forward</source>
        <translation>&amp;Vorwärts</translation>
    </message>
    <message>
        <source>&lt;h2&gt;Page not found&lt;/h2&gt;&lt;p&gt;The manual has no page %1.&lt;/p&gt;&lt;p&gt;&lt;a href=&quot;qrc:/help/index.html&quot;&gt;Back to the contents&lt;/a&gt;&lt;/p&gt;</source>
        <translation>&lt;h2&gt;Seite nicht gefunden&lt;/h2&gt;&lt;p&gt;Das Handbuch hat keine Seite %1.&lt;/p&gt;&lt;p&gt;&lt;a href=&quot;qrc:/help/index.html&quot;&gt;Zurück zum Inhalt&lt;/a&gt;&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Handbuch</translation>
    </message>
    <message>
        <source>Tavelin Manual</source>
        <translation>Tavelin-Handbuch</translation>
    </message>
    <message>
        <source>en</source>
        <comment>the folder of the manual&apos;s pages in this language</comment>
        <translation>de</translation>
    </message>
</context>
<context>
    <name>QlumHistoryPlugin</name>
    <message>
        <source>&amp;Answers to read at most:</source>
        <translation>&amp;Höchstzahl gelesener Antworten:</translation>
    </message>
    <message>
        <source>&amp;History</source>
        <translation>&amp;Historie</translation>
    </message>
    <message>
        <source>&amp;Read modified values</source>
        <translation>&amp;Geänderte Werte lesen</translation>
    </message>
    <message>
        <source>&amp;Values of a node in an answer:</source>
        <translation>&amp;Werte eines Knotens je Antwort:</translation>
    </message>
    <message>
        <source>A server that has more hands them out in several answers. With 0 it decides itself.</source>
        <translation>Hat ein Server mehr, gibt er sie in mehreren Antworten heraus. Bei 0 entscheidet er selbst.</translation>
    </message>
    <message>
        <source>Reads the history of variables and plots it over time.</source>
        <translation>Liest die Historie von Variablen und zeichnet sie über der Zeit.</translation>
    </message>
    <message>
        <source>Reads the values at the ends of the time range, too, so that curves reach them.</source>
        <translation>Liest auch die Werte an den Enden des Zeitraums, damit die Kurven bis dorthin reichen.</translation>
    </message>
    <message>
        <source>Reads the values that somebody has replaced or deleted instead of those that stand now. Most servers then refuse to be asked for bounds as well.</source>
        <translation>Liest die Werte, die jemand ersetzt oder gelöscht hat, statt der jetzt gültigen. Die meisten Server lehnen es dann ab, auch nach Randwerten gefragt zu werden.</translation>
    </message>
    <message>
        <source>Return &amp;bounds</source>
        <translation>&amp;Randwerte mitlesen</translation>
    </message>
    <message>
        <source>What a server has beyond that many further answers is left, and the view says so.</source>
        <translation>Was ein Server über so viele weitere Antworten hinaus hat, bleibt ungelesen, und die Ansicht sagt es.</translation>
    </message>
</context>
<context>
    <name>QlumHistoryReader</name>
    <message>
        <source>%1 has bad status %2</source>
        <translation>%1 hat den schlechten Status %2</translation>
    </message>
    <message>
        <source>%1 succeeded</source>
        <translation>%1 war erfolgreich</translation>
    </message>
    <message>
        <source>History Plugin</source>
        <translation>Plugin Historie</translation>
    </message>
    <message>
        <source>HistoryReadDataResults of node &apos;%1&apos; contains %2 values</source>
        <translation>HistoryReadDataResults des Knotens „%1“ enthält %2 Werte</translation>
    </message>
    <message>
        <source>HistoryReadDataResults[%1] has bad status %2</source>
        <translation>HistoryReadDataResults[%1] hat den schlechten Status %2</translation>
    </message>
    <message>
        <source>Modified values have no bounds, and servers refuse to be asked for both. Switch off one of the settings &apos;HistoryPlugin.ReadModified&apos; and &apos;HistoryPlugin.ReturnBounds&apos;.</source>
        <translation>Geänderte Werte haben keine Randwerte, und Server lehnen es ab, nach beidem gefragt zu werden. Schalten Sie eine der Einstellungen „HistoryPlugin.ReadModified“ und „HistoryPlugin.ReturnBounds“ aus.</translation>
    </message>
    <message>
        <source>No history values received for node &apos;%1&apos;</source>
        <translation>Keine historischen Werte für Knoten „%1“ empfangen</translation>
    </message>
    <message>
        <source>Server returned more ContinuationPoints than accepted by setting &apos;HistoryPlugin.MaxHistoryNextCalls&apos;. Releasing current ContinuationPoints.</source>
        <translation>Der Server hat mehr ContinuationPoints geliefert, als die Einstellung „HistoryPlugin.MaxHistoryNextCalls“ zulässt. Die aktuellen ContinuationPoints werden freigegeben.</translation>
    </message>
</context>
<context>
    <name>QlumIdentityDialog</name>
    <message>
        <source>&lt;b&gt;Password&lt;/b&gt;&lt;br&gt;Used for this connection; it is not written to any file.</source>
        <translation>&lt;b&gt;Kennwort&lt;/b&gt;&lt;br&gt;Wird für diese Verbindung verwendet; es wird in keine Datei geschrieben.</translation>
    </message>
    <message>
        <source>As whom do you want to go on? The settings of the server stay as they are.</source>
        <translation>Als wer möchten Sie weitermachen? Die Einstellungen des Servers bleiben, wie sie sind.</translation>
    </message>
    <message>
        <source>Change User of %1</source>
        <translation>Benutzer von %1 wechseln</translation>
    </message>
    <message>
        <source>Pass&amp;word:</source>
        <translation>Kenn&amp;wort:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Kennwort</translation>
    </message>
</context>
<context>
    <name>QlumIdentityWidget</name>
    <message>
        <source>&amp;Certificate:</source>
        <translation>&amp;Zertifikat:</translation>
    </message>
    <message>
        <source>&amp;Identity:</source>
        <translation>&amp;Identität:</translation>
    </message>
    <message>
        <source>&amp;Private key:</source>
        <translation>&amp;Privater Schlüssel:</translation>
    </message>
    <message>
        <source>&lt;b&gt;User&lt;/b&gt;&lt;br&gt;Who you are to the server: anonymous, a user with a password, or the holder of a certificate and its private key. Only what the server accepts can be chosen.</source>
        <translation>&lt;b&gt;Benutzer&lt;/b&gt;&lt;br&gt;Wer Sie für den Server sind: anonym, ein Benutzer mit Kennwort oder der Inhaber eines Zertifikats und seines privaten Schlüssels. Wählen lässt sich nur, was der Server annimmt.</translation>
    </message>
    <message>
        <source>Anonymous</source>
        <translation>Anonym</translation>
    </message>
    <message>
        <source>Certificate</source>
        <translation>Zertifikat</translation>
    </message>
    <message>
        <source>Certificate file</source>
        <translation>Zertifikatsdatei</translation>
    </message>
    <message>
        <source>Certificates (*.der *.cer);;All files (*)</source>
        <translation>Zertifikate (*.der *.cer);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Choose %1</source>
        <translation>%1 wählen</translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation>Eine Datei wählen</translation>
    </message>
    <message>
        <source>Keys (*.pem);;All files (*)</source>
        <translation>Schlüssel (*.pem);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Private key file</source>
        <translation>Datei des privaten Schlüssels</translation>
    </message>
    <message>
        <source>The endpoint does not take the kind of user that was chosen before.</source>
        <translation>Der Endpunkt nimmt die zuvor gewählte Art von Benutzer nicht an.</translation>
    </message>
    <message>
        <source>The endpoint takes only kinds of users that are not supported here.</source>
        <translation>Der Endpunkt nimmt nur Arten von Benutzern an, die hier nicht unterstützt werden.</translation>
    </message>
    <message>
        <source>User identity</source>
        <translation>Benutzeridentität</translation>
    </message>
    <message>
        <source>User n&amp;ame:</source>
        <translation>Ben&amp;utzername:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Benutzername</translation>
    </message>
    <message>
        <source>User name and password</source>
        <translation>Benutzername und Kennwort</translation>
    </message>
</context>
<context>
    <name>QlumImageCanvas</name>
    <message>
        <source>, alpha %1</source>
        <translation>, Alpha %1</translation>
    </message>
    <message>
        <source>, index %1</source>
        <translation>, Index %1</translation>
    </message>
    <message>
        <source>Image</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>The image. Turn the wheel to zoom where the mouse is, drag to move it, double-click to change between the whole image and its pixels. Keys: + and - zoom, 0 fits, 1 shows it one to one, the arrows move it.</source>
        <translation>Das Bild. Das Mausrad zoomt dort, wo die Maus steht, Ziehen verschiebt es, ein Doppelklick wechselt zwischen dem ganzen Bild und seinen Pixeln. Tasten: + und - zoomen, 0 passt ein, 1 zeigt es eins zu eins, die Pfeile verschieben es.</translation>
    </message>
    <message>
        <source>x %1, y %2: %3 (%4, %5, %6)</source>
        <translation>x %1, y %2: %3 (%4, %5, %6)</translation>
    </message>
</context>
<context>
    <name>QlumImageDecoder</name>
    <message>
        <source>The %1 cannot be decoded: %2.</source>
        <translation>Das %1 kann nicht dekodiert werden: %2.</translation>
    </message>
    <message>
        <source>it is cut off</source>
        <translation>es ist abgeschnitten</translation>
    </message>
    <message>
        <source>the checksum of its part %1 is wrong</source>
        <translation>die Prüfsumme seines Teils %1 ist falsch</translation>
    </message>
</context>
<context>
    <name>QlumImageFactsModel</name>
    <message>
        <source>%1 + %2 ps</source>
        <translation>%1 + %2 ps</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 Bytes</translation>
    </message>
    <message>
        <source>%1 images/s</source>
        <translation>%1 Bilder/s</translation>
    </message>
    <message>
        <source>%1, %2 dropped</source>
        <translation>%1, %2 verworfen</translation>
    </message>
    <message>
        <source>%1; number %2 is shown</source>
        <translation>%1; gezeigt wird Nummer %2</translation>
    </message>
    <message>
        <source>Data type</source>
        <translation>Datentyp</translation>
    </message>
    <message>
        <source>Element</source>
        <translation>Element</translation>
    </message>
    <message>
        <source>Fault</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Frames</source>
        <translation>Einzelbilder</translation>
    </message>
    <message>
        <source>Images dropped</source>
        <translation>Verworfene Bilder</translation>
    </message>
    <message>
        <source>Images per second</source>
        <translation>Bilder pro Sekunde</translation>
    </message>
    <message>
        <source>Images shown</source>
        <translation>Gezeigte Bilder</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
    <message>
        <source>Node id</source>
        <translation>NodeId</translation>
    </message>
    <message>
        <source>Property</source>
        <translation>Eigenschaft</translation>
    </message>
    <message>
        <source>Receive time</source>
        <translation>Empfangszeit</translation>
    </message>
    <message>
        <source>Remark</source>
        <translation>Bemerkung</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Server time</source>
        <translation>Serverzeit</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Source time</source>
        <translation>Quellzeit</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Variable</source>
        <translation>Variable</translation>
    </message>
    <message>
        <source>Watched</source>
        <translation>Überwacht</translation>
    </message>
    <message>
        <source>frame %1 of %2%3</source>
        <translation>Einzelbild %1 von %2%3</translation>
    </message>
    <message>
        <source>more than %1</source>
        <translation>mehr als %1</translation>
    </message>
    <message>
        <source>no: a value that another view has shown</source>
        <translation>nein: ein Wert, den eine andere Ansicht gezeigt hat</translation>
    </message>
    <message>
        <source>no: read when asked for</source>
        <translation>nein: wird auf Anfrage gelesen</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
    <message>
        <source>yes, sampled every %1 ms</source>
        <translation>ja, abgetastet alle %1 ms</translation>
    </message>
</context>
<context>
    <name>QlumImageFeed</name>
    <message>
        <source>Reading an image</source>
        <translation>Ein Bild lesen</translation>
    </message>
    <message>
        <source>The reading was cancelled.</source>
        <translation>Das Lesen wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The server does not watch it: %1.</source>
        <translation>Der Server überwacht es nicht: %1.</translation>
    </message>
    <message>
        <source>The server has no namespace %1.</source>
        <translation>Der Server hat keinen Namensraum %1.</translation>
    </message>
    <message>
        <source>The server is not connected.</source>
        <translation>Der Server ist nicht verbunden.</translation>
    </message>
    <message>
        <source>The value cannot be read: %1.</source>
        <translation>Der Wert kann nicht gelesen werden: %1.</translation>
    </message>
    <message>
        <source>This node is no variable: it has no value to show.</source>
        <translation>Dieser Knoten ist keine Variable: Er hat keinen Wert zum Zeigen.</translation>
    </message>
</context>
<context>
    <name>QlumImageHeader</name>
    <message>
        <source>%1, run-length encoded</source>
        <translation>%1, lauflängenkodiert</translation>
    </message>
    <message>
        <source>%1-bit</source>
        <translation>%1 Bit</translation>
    </message>
    <message numerus="yes">
        <source>%n component(s)</source>
        <translation>
            <numerusform>%n Komponente</numerusform>
            <numerusform>%n Komponenten</numerusform>
        </translation>
    </message>
    <message>
        <source>It claims to be %1 pixels large, and more than %2 megapixels are not decoded.</source>
        <translation>Es will %1 Pixel groß sein, und mehr als %2 Megapixel werden nicht dekodiert.</translation>
    </message>
    <message>
        <source>It has more than %1 scans, which no camera makes.</source>
        <translation>Es hat mehr als %1 Durchgänge; das macht keine Kamera.</translation>
    </message>
    <message>
        <source>The GIF has no frame.</source>
        <translation>Das GIF hat kein Einzelbild.</translation>
    </message>
    <message>
        <source>The JPG has no end mark: it is cut off.</source>
        <translation>Das JPG hat keine Endmarke: Es ist abgeschnitten.</translation>
    </message>
    <message>
        <source>The PNG does not begin with its header.</source>
        <translation>Das PNG beginnt nicht mit seinem Kopf.</translation>
    </message>
    <message>
        <source>The PNG has no end mark: it is cut off.</source>
        <translation>Das PNG hat keine Endmarke: Es ist abgeschnitten.</translation>
    </message>
    <message>
        <source>The bytes begin like none of BMP, GIF, JPG and PNG.</source>
        <translation>Die Bytes beginnen wie keines von BMP, GIF, JPG und PNG.</translation>
    </message>
    <message>
        <source>The bytes end within %1: the image is cut off.</source>
        <translation>Die Bytes enden in: %1; das Bild ist abgeschnitten.</translation>
    </message>
    <message>
        <source>The data type says %1, but the bytes are those of a %2.</source>
        <translation>Der Datentyp sagt %1, aber die Bytes sind die eines %2.</translation>
    </message>
    <message>
        <source>The data type says %1, but the bytes do not begin like one.</source>
        <translation>Der Datentyp sagt %1, aber die Bytes beginnen nicht so.</translation>
    </message>
    <message>
        <source>The image has no pixels: its size is %1.</source>
        <translation>Das Bild hat keine Pixel: Seine Größe ist %1.</translation>
    </message>
    <message>
        <source>The image is cut off: it has %1 of %2 bytes.</source>
        <translation>Das Bild ist abgeschnitten: Es hat %1 von %2 Bytes.</translation>
    </message>
    <message>
        <source>There is no part where one has to begin, at byte %1.</source>
        <translation>Bei Byte %1 ist kein Abschnitt, wo einer beginnen muss.</translation>
    </message>
    <message>
        <source>With %1 pixels it needs %2 MB of memory, and there are %3 MB for it.</source>
        <translation>Mit %1 Pixeln braucht es %2 MB Speicher, und dafür sind %3 MB da.</translation>
    </message>
    <message>
        <source>colour</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>frame %1</source>
        <translation>Einzelbild %1</translation>
    </message>
    <message>
        <source>greyscale</source>
        <translation>Graustufen</translation>
    </message>
    <message>
        <source>greyscale with alpha</source>
        <translation>Graustufen mit Alpha</translation>
    </message>
    <message>
        <source>interlaced</source>
        <translation>interlaced</translation>
    </message>
    <message>
        <source>its part %1</source>
        <translation>Abschnitt %1</translation>
    </message>
    <message>
        <source>palette</source>
        <translation>Palette</translation>
    </message>
    <message>
        <source>progressive</source>
        <translation>progressiv</translation>
    </message>
    <message>
        <source>the PNG</source>
        <translation>PNG</translation>
    </message>
    <message>
        <source>the header of a BMP</source>
        <translation>Kopf eines BMP</translation>
    </message>
    <message>
        <source>the header of a GIF</source>
        <translation>Kopf eines GIF</translation>
    </message>
    <message>
        <source>the header of a JPG</source>
        <translation>Kopf eines JPG</translation>
    </message>
    <message>
        <source>the header of a PNG</source>
        <translation>Kopf eines PNG</translation>
    </message>
</context>
<context>
    <name>QlumImageTile</name>
    <message>
        <source>  |  %1 %</source>
        <translation>  |  %1 %</translation>
    </message>
    <message>
        <source>&lt;b&gt;Element&lt;/b&gt;&lt;br&gt;Which of the images in this value is shown.</source>
        <translation>&lt;b&gt;Element&lt;/b&gt;&lt;br&gt;Welches der Bilder in diesem Wert gezeigt wird.</translation>
    </message>
    <message>
        <source>&lt;b&gt;First bytes&lt;/b&gt;&lt;br&gt;What the value begins with, hexadecimal and as text.</source>
        <translation>&lt;b&gt;Erste Bytes&lt;/b&gt;&lt;br&gt;Womit der Wert beginnt, hexadezimal und als Text.</translation>
    </message>
    <message>
        <source>Element</source>
        <translation>Element</translation>
    </message>
    <message>
        <source>First bytes</source>
        <translation>Erste Bytes</translation>
    </message>
    <message>
        <source>Image</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>No value has come yet.</source>
        <translation>Es ist noch kein Wert gekommen.</translation>
    </message>
    <message>
        <source>Reading...</source>
        <translation>Wird gelesen...</translation>
    </message>
    <message>
        <source>The first %1 parts of the value were looked at.</source>
        <translation>Die ersten %1 Teile des Werts wurden angesehen.</translation>
    </message>
    <message>
        <source>Which of the images in this value is shown</source>
        <translation>Welches der Bilder in diesem Wert gezeigt wird</translation>
    </message>
</context>
<context>
    <name>QlumImageValue</name>
    <message>
        <source>Choose another one, or wait for the next value.</source>
        <translation>Wählen Sie ein anderes, oder warten Sie auf den nächsten Wert.</translation>
    </message>
    <message>
        <source>Drop a variable of a data type ImageBMP, ImageGIF, ImageJPG or ImagePNG, or a ByteString that holds one of these.</source>
        <translation>Legen Sie eine Variable mit dem Datentyp ImageBMP, ImageGIF, ImageJPG oder ImagePNG ab, oder einen ByteString, der ein solches Bild enthält.</translation>
    </message>
    <message>
        <source>None of the parts of this %1 is an image.</source>
        <translation>Keiner der Teile dieses %1 ist ein Bild.</translation>
    </message>
    <message>
        <source>The element %1 holds no image now.</source>
        <translation>Das Element %1 enthält jetzt kein Bild.</translation>
    </message>
    <message>
        <source>The image cannot be shown.</source>
        <translation>Das Bild kann nicht gezeigt werden.</translation>
    </message>
    <message>
        <source>The server has no image at the moment.</source>
        <translation>Der Server hat im Moment kein Bild.</translation>
    </message>
    <message>
        <source>The value is an empty byte string.</source>
        <translation>Der Wert ist eine leere Bytefolge.</translation>
    </message>
    <message>
        <source>The value is bad.</source>
        <translation>Der Wert ist schlecht.</translation>
    </message>
    <message>
        <source>The value is no image but a %1.</source>
        <translation>Der Wert ist kein Bild, sondern ein %1.</translation>
    </message>
    <message>
        <source>The value is null.</source>
        <translation>Der Wert ist null.</translation>
    </message>
</context>
<context>
    <name>QlumImageView</name>
    <message>
        <source>%1 files (*.%2);;All files (*)</source>
        <translation>%1-Dateien (*.%2);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 was not written.</source>
        <translation>%1 wurde nicht geschrieben.</translation>
    </message>
    <message numerus="yes">
        <source>%n image(s) of this view were left out.</source>
        <translation>
            <numerusform>%n Bild dieser Ansicht wurde weggelassen.</numerusform>
            <numerusform>%n Bilder dieser Ansicht wurden weggelassen.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;1:1</source>
        <translation>&amp;1:1</translation>
    </message>
    <message>
        <source>&amp;Copy Image</source>
        <translation>Bild &amp;kopieren</translation>
    </message>
    <message>
        <source>&amp;Fit</source>
        <translation>&amp;Einpassen</translation>
    </message>
    <message>
        <source>&amp;Play</source>
        <translation>A&amp;bspielen</translation>
    </message>
    <message>
        <source>&amp;Read</source>
        <translation>&amp;Lesen</translation>
    </message>
    <message>
        <source>&amp;Save As...</source>
        <translation>&amp;Speichern unter...</translation>
    </message>
    <message>
        <source>&amp;Watch</source>
        <translation>Über&amp;wachen</translation>
    </message>
    <message>
        <source>&lt;b&gt;Interval&lt;/b&gt;&lt;br&gt;How often the server reports a watched image. Of images that come faster than they are decoded the newest is shown, and the others are counted.</source>
        <translation>&lt;b&gt;Intervall&lt;/b&gt;&lt;br&gt;Wie oft der Server ein überwachtes Bild meldet. Kommen Bilder schneller, als sie dekodiert werden, wird das neueste gezeigt, und die anderen werden gezählt.</translation>
    </message>
    <message>
        <source>A view shows at most %1 images.</source>
        <translation>Eine Ansicht zeigt höchstens %1 Bilder.</translation>
    </message>
    <message>
        <source>Copy the image to the clipboard, with its bytes as they were received</source>
        <translation>Das Bild in die Zwischenablage kopieren, mit seinen Bytes, wie sie empfangen wurden</translation>
    </message>
    <message>
        <source>Drop variables of the data types ImageBMP, ImageGIF, ImageJPG and ImagePNG here, or byte strings that hold such images.</source>
        <translation>Legen Sie hier Variablen der Datentypen ImageBMP, ImageGIF, ImageJPG und ImagePNG ab, oder Bytefolgen, die solche Bilder enthalten.</translation>
    </message>
    <message>
        <source>Image</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Image Viewer</source>
        <translation>Bildbetrachter</translation>
    </message>
    <message>
        <source>Images are asked for every</source>
        <translation>Bilder werden abgefragt alle</translation>
    </message>
    <message>
        <source>No image</source>
        <translation>Kein Bild</translation>
    </message>
    <message>
        <source>Open &amp;All Elements</source>
        <translation>&amp;Alle Elemente öffnen</translation>
    </message>
    <message>
        <source>Re&amp;move</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Read the current image from its server now</source>
        <translation>Das aktuelle Bild jetzt von seinem Server lesen</translation>
    </message>
    <message>
        <source>Remove some, or open another image viewer.</source>
        <translation>Entfernen Sie einige, oder öffnen Sie einen weiteren Bildbetrachter.</translation>
    </message>
    <message>
        <source>Save Image</source>
        <translation>Bild speichern</translation>
    </message>
    <message>
        <source>Select an image.</source>
        <translation>Wählen Sie ein Bild.</translation>
    </message>
    <message>
        <source>Show a pixel of the image as a pixel of the screen (1)</source>
        <translation>Ein Pixel des Bilds als ein Pixel des Bildschirms zeigen (1)</translation>
    </message>
    <message>
        <source>Show all images of an array or a structure side by side</source>
        <translation>Alle Bilder eines Arrays oder einer Struktur nebeneinander zeigen</translation>
    </message>
    <message>
        <source>Show every new image that the server reports; else it is read when asked for</source>
        <translation>Jedes neue Bild zeigen, das der Server meldet; sonst wird es auf Anfrage gelesen</translation>
    </message>
    <message>
        <source>Show the frames of an animation one after the other</source>
        <translation>Die Einzelbilder einer Animation nacheinander zeigen</translation>
    </message>
    <message>
        <source>Show the image larger, down to its single pixels</source>
        <translation>Das Bild größer zeigen, bis zu einzelnen Pixeln</translation>
    </message>
    <message>
        <source>Show the image smaller</source>
        <translation>Das Bild kleiner zeigen</translation>
    </message>
    <message>
        <source>Show the whole image (0)</source>
        <translation>Das ganze Bild zeigen (0)</translation>
    </message>
    <message>
        <source>Take the current image out of this view</source>
        <translation>Das aktuelle Bild aus dieser Ansicht nehmen</translation>
    </message>
    <message>
        <source>Their server is not in the project, or their node id cannot be read.</source>
        <translation>Ihr Server ist nicht im Projekt, oder ihre NodeId kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Value shown by another view</source>
        <translation>Wert aus einer anderen Ansicht</translation>
    </message>
    <message>
        <source>What is known of the current image</source>
        <translation>Was vom aktuellen Bild bekannt ist</translation>
    </message>
    <message>
        <source>Write the bytes to a file as they were received</source>
        <translation>Die Bytes in eine Datei schreiben, wie sie empfangen wurden</translation>
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
        <source>image</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>reading...</source>
        <translation>wird gelesen...</translation>
    </message>
</context>
<context>
    <name>QlumImageViewerPlugin</name>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>&amp;Images</source>
        <translation>&amp;Bilder</translation>
    </message>
    <message>
        <source>&amp;Watch images that are opened</source>
        <translation>Geöffnete Bilder &amp;überwachen</translation>
    </message>
    <message>
        <source>Ask for &amp;new images every:</source>
        <translation>Nach &amp;neuen Bildern fragen alle:</translation>
    </message>
    <message>
        <source>Shows every new image that the server reports. Else an image is read once, and again when you ask for it.</source>
        <translation>Zeigt jedes neue Bild, das der Server meldet. Sonst wird ein Bild einmal gelesen und wieder, wenn Sie danach fragen.</translation>
    </message>
    <message>
        <source>Shows the pictures that a server offers as values of variables, once or as they change.</source>
        <translation>Zeigt die Bilder, die ein Server als Werte von Variablen anbietet, einmal oder bei jeder Änderung.</translation>
    </message>
    <message>
        <source>The interval of documents that are opened from now on. Each may have another one.</source>
        <translation>Das Intervall von Dokumenten, die ab jetzt geöffnet werden. Jedes kann ein anderes haben.</translation>
    </message>
</context>
<context>
    <name>QlumIniCheck</name>
    <message>
        <source>The file is larger than %1 MB.</source>
        <translation>Die Datei ist größer als %1 MB.</translation>
    </message>
</context>
<context>
    <name>QlumIniText</name>
    <message>
        <source>%1 more entries were skipped.</source>
        <translation>%1 weitere Einträge wurden übergangen.</translation>
    </message>
    <message>
        <source>Skipped &apos;%1&apos;: %2.</source>
        <translation>„%1“ übergangen: %2.</translation>
    </message>
    <message>
        <source>a part of its name is empty</source>
        <translation>ein Teil des Namens ist leer</translation>
    </message>
    <message>
        <source>it is no entry</source>
        <translation>das ist kein Eintrag</translation>
    </message>
    <message>
        <source>the value is neither text nor number</source>
        <translation>der Wert ist weder Text noch Zahl</translation>
    </message>
    <message>
        <source>there are too many values before it</source>
        <translation>davor stehen zu viele Werte</translation>
    </message>
</context>
<context>
    <name>QlumJobPool</name>
    <message>
        <source>%1 failed: %2</source>
        <translation>%1 fehlgeschlagen: %2</translation>
    </message>
    <message>
        <source>Background work</source>
        <translation>Hintergrundarbeit</translation>
    </message>
    <message>
        <source>JobPool</source>
        <translation>Hintergrundarbeit</translation>
    </message>
</context>
<context>
    <name>QlumJournal</name>
    <message>
        <source>Journal</source>
        <translation>Journal</translation>
    </message>
    <message>
        <source>What is changed on servers cannot be written to %1: %2.</source>
        <translation>Was auf Servern geändert wird, kann nicht nach %1 geschrieben werden: %2.</translation>
    </message>
    <message>
        <source>the file of the day is full</source>
        <translation>die Datei des Tages ist voll</translation>
    </message>
    <message>
        <source>the folder cannot be made</source>
        <translation>der Ordner kann nicht angelegt werden</translation>
    </message>
</context>
<context>
    <name>QlumJournalModel</name>
    <message>
        <source>(anonymous)</source>
        <translation>(anonym)</translation>
    </message>
    <message>
        <source>After</source>
        <translation>Nachher</translation>
    </message>
    <message>
        <source>Before</source>
        <translation>Vorher</translation>
    </message>
    <message>
        <source>By</source>
        <translation>Durch</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Service</source>
        <translation>Dienst</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>User</source>
        <translation>Benutzer</translation>
    </message>
    <message>
        <source>What</source>
        <translation>Was</translation>
    </message>
</context>
<context>
    <name>QlumJournalWindow</name>
    <message numerus="yes">
        <source>%1 of %n change(s)</source>
        <translation>
            <numerusform>%1 von %n Änderung</numerusform>
            <numerusform>%1 von %n Änderungen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n line(s) cannot be read.</source>
        <translation>
            <numerusform>%n Zeile kann nicht gelesen werden.</numerusform>
            <numerusform>%n Zeilen können nicht gelesen werden.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n older change(s) are in the file only.</source>
        <translation>
            <numerusform>%n ältere Änderung steht nur in der Datei.</numerusform>
            <numerusform>%n ältere Änderungen stehen nur in der Datei.</numerusform>
        </translation>
    </message>
    <message>
        <source>All outcomes</source>
        <translation>Alle Ergebnisse</translation>
    </message>
    <message>
        <source>All servers</source>
        <translation>Alle Server</translation>
    </message>
    <message>
        <source>Day</source>
        <translation>Tag</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Ausgeführt</translation>
    </message>
    <message>
        <source>E&amp;xport...</source>
        <translation>E&amp;xportieren...</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Fehlgeschlagen</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Journal</source>
        <translation>Journal</translation>
    </message>
    <message>
        <source>No change of that day is shown.</source>
        <translation>Von diesem Tag wird keine Änderung gezeigt.</translation>
    </message>
    <message>
        <source>Not sent</source>
        <translation>Nicht gesendet</translation>
    </message>
    <message>
        <source>Outcome</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Reading the journal</source>
        <translation>Journal lesen</translation>
    </message>
    <message>
        <source>Reading...</source>
        <translation>Wird gelesen...</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Show changes on this server</source>
        <translation>Änderungen auf diesem Server zeigen</translation>
    </message>
    <message>
        <source>Show changes that came to this</source>
        <translation>Änderungen mit diesem Ergebnis zeigen</translation>
    </message>
    <message>
        <source>Show changes that hold this text</source>
        <translation>Änderungen zeigen, die diesen Text enthalten</translation>
    </message>
    <message>
        <source>The day whose changes are shown</source>
        <translation>Der Tag, dessen Änderungen gezeigt werden</translation>
    </message>
    <message>
        <source>The file cannot be read: %1.</source>
        <translation>Die Datei kann nicht gelesen werden: %1.</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <source>Writes the rows that are shown as comma separated values</source>
        <translation>Schreibt die gezeigten Zeilen als kommagetrennte Werte</translation>
    </message>
    <message>
        <source>journal</source>
        <translation>Journal</translation>
    </message>
</context>
<context>
    <name>QlumJsonFault</name>
    <message>
        <source>a control character in a string at character %1</source>
        <translation>ein Steuerzeichen in einer Zeichenkette bei Zeichen %1</translation>
    </message>
    <message>
        <source>a number was expected</source>
        <translation>eine Zahl wird erwartet</translation>
    </message>
    <message>
        <source>a string that is no UTF-8 at character %1</source>
        <translation>eine Zeichenkette, die kein UTF-8 ist, bei Zeichen %1</translation>
    </message>
    <message>
        <source>a string without end at character %1</source>
        <translation>eine Zeichenkette ohne Ende bei Zeichen %1</translation>
    </message>
    <message>
        <source>a text was expected</source>
        <translation>ein Text wird erwartet</translation>
    </message>
    <message>
        <source>a value that is not of the field&apos;s type</source>
        <translation>ein Wert, der nicht vom Typ des Feldes ist</translation>
    </message>
    <message>
        <source>a value without a built-in type</source>
        <translation>ein Wert ohne eingebauten Typ</translation>
    </message>
    <message>
        <source>an array was expected</source>
        <translation>ein Array wird erwartet</translation>
    </message>
    <message>
        <source>an unknown escape at character %1</source>
        <translation>eine unbekannte Escape-Folge bei Zeichen %1</translation>
    </message>
    <message>
        <source>an unknown kind of node id</source>
        <translation>eine unbekannte Art von NodeId</translation>
    </message>
    <message>
        <source>dimensions that do not fit the number of elements</source>
        <translation>Dimensionen, die nicht zur Zahl der Elemente passen</translation>
    </message>
    <message>
        <source>elements of different types</source>
        <translation>Elemente verschiedener Typen</translation>
    </message>
    <message>
        <source>fields that do not make a %1</source>
        <translation>Felder, aus denen kein %1 wird</translation>
    </message>
    <message>
        <source>fields were expected</source>
        <translation>Felder werden erwartet</translation>
    </message>
    <message>
        <source>half a surrogate pair at character %1</source>
        <translation>ein halbes Surrogatpaar bei Zeichen %1</translation>
    </message>
    <message>
        <source>more text after the value at character %1</source>
        <translation>weiterer Text nach dem Wert bei Zeichen %1</translation>
    </message>
    <message>
        <source>nested too deep</source>
        <translation>zu tief verschachtelt</translation>
    </message>
    <message>
        <source>nested too deep at character %1</source>
        <translation>zu tief verschachtelt bei Zeichen %1</translation>
    </message>
    <message>
        <source>no Base64</source>
        <translation>kein Base64</translation>
    </message>
    <message>
        <source>no Guid</source>
        <translation>keine Guid</translation>
    </message>
    <message>
        <source>no ] or , at character %1</source>
        <translation>kein ] oder , bei Zeichen %1</translation>
    </message>
    <message>
        <source>no colon at character %1</source>
        <translation>kein Doppelpunkt bei Zeichen %1</translation>
    </message>
    <message>
        <source>no member name at character %1</source>
        <translation>kein Name eines Elements bei Zeichen %1</translation>
    </message>
    <message>
        <source>no number of its type: %1</source>
        <translation>keine Zahl dieses Typs: %1</translation>
    </message>
    <message>
        <source>no time</source>
        <translation>keine Zeit</translation>
    </message>
    <message>
        <source>no value at character %1</source>
        <translation>kein Wert bei Zeichen %1</translation>
    </message>
    <message>
        <source>no } or , at character %1</source>
        <translation>kein } oder , bei Zeichen %1</translation>
    </message>
    <message>
        <source>nobody knows its type</source>
        <translation>sein Typ ist unbekannt</translation>
    </message>
    <message>
        <source>nobody knows the type %1</source>
        <translation>der Typ %1 ist unbekannt</translation>
    </message>
    <message>
        <source>rows of different length</source>
        <translation>Zeilen verschiedener Länge</translation>
    </message>
    <message>
        <source>the text is too long at character %1</source>
        <translation>der Text ist zu lang bei Zeichen %1</translation>
    </message>
    <message>
        <source>too many values at character %1</source>
        <translation>zu viele Werte bei Zeichen %1</translation>
    </message>
    <message>
        <source>true or false was expected</source>
        <translation>true oder false wird erwartet</translation>
    </message>
</context>
<context>
    <name>QlumJsonPage</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>Copies the whole text</source>
        <translation>Kopiert den ganzen Text</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>JSON text</source>
        <translation>JSON-Text</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Replaces the whole text by what was copied</source>
        <translation>Ersetzt den ganzen Text durch das Kopierte</translation>
    </message>
    <message>
        <source>So long a text is checked when it is sent.</source>
        <translation>Ein so langer Text wird erst beim Senden geprüft.</translation>
    </message>
    <message>
        <source>The value cannot be written as JSON: %1</source>
        <translation>Der Wert kann nicht als JSON geschrieben werden: %1</translation>
    </message>
    <message>
        <source>This JSON text is no value: %1</source>
        <translation>Dieser JSON-Text ist kein Wert: %1</translation>
    </message>
    <message>
        <source>Type is the number of the built-in type, Body the value itself.</source>
        <translation>Type ist die Nummer des eingebauten Typs, Body der Wert selbst.</translation>
    </message>
</context>
<context>
    <name>QlumLinePage</name>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <source>A name, or a number: %1</source>
        <translation>Ein Name oder eine Zahl: %1</translation>
    </message>
    <message>
        <source>Base</source>
        <translation>Basis</translation>
    </message>
    <message>
        <source>Binary</source>
        <translation>Binär</translation>
    </message>
    <message>
        <source>Decimal</source>
        <translation>Dezimal</translation>
    </message>
    <message>
        <source>Hexadecimal</source>
        <translation>Hexadezimal</translation>
    </message>
    <message>
        <source>How the number is written; 0x and 0b may always be typed</source>
        <translation>Wie die Zahl geschrieben wird; 0x und 0b dürfen immer eingegeben werden</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Neu</translation>
    </message>
    <message>
        <source>Takes a random identifier</source>
        <translation>Nimmt einen zufälligen Bezeichner</translation>
    </message>
</context>
<context>
    <name>QlumListPart</name>
    <message>
        <source>%1 cannot be read: %2.</source>
        <translation>%1 kann nicht gelesen werden: %2.</translation>
    </message>
    <message>
        <source>%1 is too large. Lists may have up to %2 MB.</source>
        <translation>%1 ist zu groß. Listen dürfen bis zu %2 MB haben.</translation>
    </message>
    <message>
        <source>%1 of %2 lines cannot be staged; the list of staged values says why.</source>
        <translation>%1 von %2 Zeilen können nicht vorgemerkt werden; die Liste der vorgemerkten Werte sagt, warum.</translation>
    </message>
    <message>
        <source>%1 of %2 lines name no variable; their rows say why.</source>
        <translation>%1 von %2 Zeilen nennen keine Variable; ihre Zeilen sagen, warum.</translation>
    </message>
    <message numerus="yes">
        <source>%n row(s) were added.</source>
        <translation>
            <numerusform>%n Zeile wurde hinzugefügt.</numerusform>
            <numerusform>%n Zeilen wurden hinzugefügt.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Lists</source>
        <translation>&amp;Listen</translation>
    </message>
    <message>
        <source>&amp;Load List of Nodes...</source>
        <translation>Knoten&amp;liste laden...</translation>
    </message>
    <message>
        <source>&amp;Paste Nodes</source>
        <translation>Knoten &amp;einfügen</translation>
    </message>
    <message>
        <source>Adding the rows of a list</source>
        <translation>Die Zeilen einer Liste hinzufügen</translation>
    </message>
    <message>
        <source>Adds a row for each line of a CSV file with node ids or browse paths.</source>
        <translation>Fügt für jede Zeile einer CSV-Datei mit NodeIds oder Pfaden eine Zeile hinzu.</translation>
    </message>
    <message>
        <source>Adds a row for each line of the clipboard: node ids with the index or the URI of their namespace, or browse paths.</source>
        <translation>Fügt für jede Zeile der Zwischenablage eine Zeile hinzu: NodeIds mit Index oder URI ihres Namensraums, oder Pfade.</translation>
    </message>
    <message>
        <source>Asks the servers again for what named no node, of the selected rows or of all.</source>
        <translation>Fragt die Server erneut nach dem, was keinen Knoten nannte, bei den gewählten Zeilen oder bei allen.</translation>
    </message>
    <message>
        <source>It has no column with values.</source>
        <translation>Sie hat keine Spalte mit Werten.</translation>
    </message>
    <message>
        <source>Line %1 has no value.</source>
        <translation>Zeile %1 hat keinen Wert.</translation>
    </message>
    <message>
        <source>Line %1, &quot;%2&quot;: %3</source>
        <translation>Zeile %1, „%2“: %3</translation>
    </message>
    <message>
        <source>Lines without a server are nodes of:</source>
        <translation>Zeilen ohne Server sind Knoten von:</translation>
    </message>
    <message>
        <source>Lists (*.csv *.txt);;All files (*)</source>
        <translation>Listen (*.csv *.txt);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Load List of Nodes</source>
        <translation>Knotenliste laden</translation>
    </message>
    <message>
        <source>Load New &amp;Values...</source>
        <translation>Neue &amp;Werte laden...</translation>
    </message>
    <message>
        <source>Load New Values</source>
        <translation>Neue Werte laden</translation>
    </message>
    <message>
        <source>Look for Unresolved Rows &amp;Again</source>
        <translation>&amp;Ungelöste Zeilen erneut suchen</translation>
    </message>
    <message>
        <source>Looking for the nodes of a list</source>
        <translation>Die Knoten einer Liste suchen</translation>
    </message>
    <message>
        <source>Nothing was taken from the list.</source>
        <translation>Aus der Liste wurde nichts übernommen.</translation>
    </message>
    <message>
        <source>Only the first %1 of %2 lines were staged; you have stopped it.</source>
        <translation>Nur die ersten %1 von %2 Zeilen wurden vorgemerkt; Sie haben angehalten.</translation>
    </message>
    <message>
        <source>Reading a list of nodes</source>
        <translation>Eine Knotenliste lesen</translation>
    </message>
    <message>
        <source>Server of the List</source>
        <translation>Server der Liste</translation>
    </message>
    <message>
        <source>Showing what the rows have become</source>
        <translation>Zeigen, was aus den Zeilen geworden ist</translation>
    </message>
    <message>
        <source>Stages the values of a CSV file with the columns Node Id and Value. Nothing is written before you say so.</source>
        <translation>Merkt die Werte einer CSV-Datei mit den Spalten Node Id und Value vor. Geschrieben wird nichts, bevor Sie es sagen.</translation>
    </message>
    <message>
        <source>Staging the values of a list</source>
        <translation>Die Werte einer Liste vormerken</translation>
    </message>
    <message>
        <source>The project has no server &quot;%1&quot;.</source>
        <translation>Das Projekt hat keinen Server „%1“.</translation>
    </message>
    <message>
        <source>The server cannot be asked at the moment; look for it again later.</source>
        <translation>Der Server kann im Moment nicht gefragt werden; suchen Sie später noch einmal.</translation>
    </message>
</context>
<context>
    <name>QlumLocalizedTextPage</name>
    <message>
        <source>&amp;Text:</source>
        <translation>&amp;Text:</translation>
    </message>
    <message>
        <source>A locale is a language and a region, like de-DE.</source>
        <translation>Ein Gebietsschema ist Sprache und Region, etwa de-DE.</translation>
    </message>
    <message>
        <source>L&amp;ocale:</source>
        <translation>&amp;Gebietsschema:</translation>
    </message>
    <message>
        <source>Language and region: en, de-DE; empty when it is not known</source>
        <translation>Sprache und Region: en, de-DE; leer, wenn nicht bekannt</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
</context>
<context>
    <name>QlumLogFilter</name>
    <message>
        <source>%1 times, from %2 to %3</source>
        <translation>%1-mal, von %2 bis %3</translation>
    </message>
    <message>
        <source>%1 times: %2</source>
        <translation>%1-mal: %2</translation>
    </message>
</context>
<context>
    <name>QlumLogMeaning</name>
    <message>
        <source>failed</source>
        <comment>words of log texts that tell of a failure, with | between</comment>
        <translation>fehlgeschlagen|schlug|gescheitert|scheiterte</translation>
    </message>
    <message>
        <source>succeeded</source>
        <comment>words of log texts that tell of success, with | between</comment>
        <translation>erfolgreich</translation>
    </message>
</context>
<context>
    <name>QlumLogModel</name>
    <message>
        <source>%1 log entries came too fast and were dropped.</source>
        <translation>%1 Einträge kamen zu schnell und wurden verworfen.</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>Timestamp</source>
        <translation>Zeitstempel</translation>
    </message>
</context>
<context>
    <name>QlumLogView</name>
    <message>
        <source>All entries</source>
        <translation>Alle Einträge</translation>
    </message>
    <message>
        <source>Errors</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>Least level shown</source>
        <translation>Niedrigste gezeigte Stufe</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Log Toolbar</source>
        <translation>Symbolleiste des Protokolls</translation>
    </message>
    <message>
        <source>Nothing has been logged yet.</source>
        <translation>Noch ist nichts protokolliert.</translation>
    </message>
    <message>
        <source>Show entries of this level and more serious ones</source>
        <translation>Einträge dieser und ernsterer Stufen zeigen</translation>
    </message>
    <message>
        <source>Show entries that hold this text</source>
        <translation>Einträge zeigen, die diesen Text enthalten</translation>
    </message>
    <message>
        <source>Text to filter the log by</source>
        <translation>Text, nach dem das Protokoll gefiltert wird</translation>
    </message>
    <message>
        <source>Warnings</source>
        <translation>Warnungen</translation>
    </message>
    <message>
        <source>log</source>
        <translation>Protokoll</translation>
    </message>
</context>
<context>
    <name>QlumLoggerModel</name>
    <message>
        <source>(not in this project)</source>
        <translation>(nicht in diesem Projekt)</translation>
    </message>
    <message>
        <source>Data Type</source>
        <translation>Datentyp</translation>
    </message>
    <message>
        <source>Interruptions</source>
        <translation>Unterbrechungen</translation>
    </message>
    <message>
        <source>Its server is not in this project</source>
        <translation>Sein Server ist nicht in diesem Projekt</translation>
    </message>
    <message>
        <source>Last Value</source>
        <translation>Letzter Wert</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>No connection: what is missed is marked</source>
        <translation>Keine Verbindung: Was fehlt, wird vermerkt</translation>
    </message>
    <message>
        <source>Node Id</source>
        <translation>NodeId</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Overflows</source>
        <translation>Überläufe</translation>
    </message>
    <message>
        <source>Path</source>
        <translation>Pfad</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>Received</source>
        <translation>Empfangen</translation>
    </message>
    <message>
        <source>Recorded</source>
        <translation>Aufgezeichnet</translation>
    </message>
    <message>
        <source>Recorded, no value yet</source>
        <translation>Aufgezeichnet, noch kein Wert</translation>
    </message>
    <message>
        <source>Records</source>
        <translation>Aufgezeichnete Werte</translation>
    </message>
    <message>
        <source>Refused: %1</source>
        <translation>Abgelehnt: %1</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>The server has no namespace %1</source>
        <translation>Der Server hat keinen Namensraum %1</translation>
    </message>
    <message>
        <source>Waits for its server</source>
        <translation>Wartet auf seinen Server</translation>
    </message>
    <message>
        <source>Waits for the file</source>
        <translation>Wartet auf die Datei</translation>
    </message>
    <message>
        <source>Watched</source>
        <translation>Überwacht</translation>
    </message>
    <message>
        <source>every %1, sent every %2</source>
        <translation>alle %1, gesendet alle %2</translation>
    </message>
</context>
<context>
    <name>QlumLoggerPanel</name>
    <message>
        <source> (%1 old ones deleted)</source>
        <translation> (%1 alte gelöscht)</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>%1/s</source>
        <translation>%1/s</translation>
    </message>
    <message>
        <source>Cannot write. It is tried again and again.</source>
        <translation>Schreiben nicht möglich. Es wird immer wieder versucht.</translation>
    </message>
    <message>
        <source>Closing the file...</source>
        <translation>Die Datei wird geschlossen...</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Free space</source>
        <translation>Freier Platz</translation>
    </message>
    <message>
        <source>Last error</source>
        <translation>Letzter Fehler</translation>
    </message>
    <message>
        <source>Last error, %1: %2</source>
        <translation>Letzter Fehler, %1: %2</translation>
    </message>
    <message>
        <source>Lost</source>
        <translation>Verloren</translation>
    </message>
    <message>
        <source>Not recording</source>
        <translation>Keine Aufzeichnung</translation>
    </message>
    <message>
        <source>Paused: the disk is nearly full. It goes on when there is room.</source>
        <translation>Pause: Die Festplatte ist fast voll. Es geht weiter, sobald Platz ist.</translation>
    </message>
    <message>
        <source>Queue</source>
        <translation>Warteschlange</translation>
    </message>
    <message>
        <source>Rate</source>
        <translation>Rate</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Aufzeichnung läuft</translation>
    </message>
    <message>
        <source>Recording since</source>
        <translation>Aufzeichnung seit</translation>
    </message>
    <message numerus="yes">
        <source>Recording, without connection for %n item(s)</source>
        <translation>
            <numerusform>Zeichnet auf, ohne Verbindung für %n Element</numerusform>
            <numerusform>Zeichnet auf, ohne Verbindung für %n Elemente</numerusform>
        </translation>
    </message>
    <message>
        <source>Records</source>
        <translation>Aufgezeichnete Werte</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Values that could not be recorded because the disk was too slow or full. Marks in the recording say when.</source>
        <translation>Werte, die nicht aufgezeichnet werden konnten, weil die Festplatte zu langsam oder voll war. Vermerke in der Aufzeichnung sagen, wann.</translation>
    </message>
    <message>
        <source>Values that wait to be written, and how many may.</source>
        <translation>Werte, die auf das Schreiben warten, und wie viele es sein dürfen.</translation>
    </message>
</context>
<context>
    <name>QlumLoggerSession</name>
    <message>
        <source>Closing a recording</source>
        <translation>Eine Aufzeichnung schließen</translation>
    </message>
</context>
<context>
    <name>QlumLoggerSettings</name>
    <message>
        <source> MB</source>
        <translation> MB</translation>
    </message>
    <message>
        <source>&amp;Folder:</source>
        <translation>&amp;Ordner:</translation>
    </message>
    <message>
        <source>&amp;Queue size:</source>
        <translation>&amp;Warteschlange:</translation>
    </message>
    <message>
        <source>Data &amp;Logger</source>
        <translation>Daten&amp;logger</translation>
    </message>
    <message>
        <source>F&amp;ree space:</source>
        <translation>F&amp;reier Platz:</translation>
    </message>
    <message>
        <source>How many values of a server are kept in memory while the disk is slow. When there are more, the oldest are lost, and the recording says so.</source>
        <translation>Wie viele Werte eines Servers im Speicher bleiben, während die Festplatte langsam ist. Sind es mehr, gehen die ältesten verloren, und die Aufzeichnung sagt es.</translation>
    </message>
    <message>
        <source>Recording pauses while the disk has less than that.</source>
        <translation>Die Aufzeichnung pausiert, solange auf der Festplatte weniger frei ist.</translation>
    </message>
    <message>
        <source>What new data logger views begin with:</source>
        <translation>Womit neue Datenlogger-Ansichten beginnen:</translation>
    </message>
    <message>
        <source>Where recordings are written. Empty: your folder of documents.</source>
        <translation>Wohin Aufzeichnungen geschrieben werden. Leer: Ihr Dokumentenordner.</translation>
    </message>
</context>
<context>
    <name>QlumLoggerSetupDialog</name>
    <message>
        <source> MB</source>
        <translation> MB</translation>
    </message>
    <message>
        <source> days</source>
        <translation> Tage</translation>
    </message>
    <message>
        <source> h</source>
        <translation> h</translation>
    </message>
    <message>
        <source>&amp;Begin to record when the project is opened</source>
        <translation>&amp;Aufzeichnung beim Öffnen des Projekts beginnen</translation>
    </message>
    <message>
        <source>B&amp;rowse...</source>
        <translation>D&amp;urchsuchen...</translation>
    </message>
    <message>
        <source>&amp;File:</source>
        <translation>&amp;Datei:</translation>
    </message>
    <message>
        <source>&amp;Kind:</source>
        <translation>A&amp;rt:</translation>
    </message>
    <message>
        <source>&amp;Leave free on the disk:</source>
        <translation>Auf der Festplatte frei &amp;lassen:</translation>
    </message>
    <message>
        <source>&amp;Next file after:</source>
        <translation>&amp;Nächste Datei nach:</translation>
    </message>
    <message>
        <source>A CSV file of that age is followed by another.</source>
        <translation>Auf eine CSV-Datei dieses Alters folgt eine weitere.</translation>
    </message>
    <message>
        <source>A CSV file of that size is followed by another.</source>
        <translation>Auf eine CSV-Datei dieser Größe folgt eine weitere.</translation>
    </message>
    <message>
        <source>A recording that is there already is continued.</source>
        <translation>Eine schon vorhandene Aufzeichnung wird fortgesetzt.</translation>
    </message>
    <message>
        <source>An SQLite recording that is there already goes on; the gap is marked.</source>
        <translation>Eine schon vorhandene SQLite-Aufzeichnung geht weiter; die Lücke wird vermerkt.</translation>
    </message>
    <message>
        <source>Beyond that the oldest records are deleted, and a mark in the recording says so.</source>
        <translation>Darüber hinaus werden die ältesten Datensätze gelöscht, und ein Vermerk in der Aufzeichnung sagt es.</translation>
    </message>
    <message>
        <source>Both can be opened here again and plotted. SQLite finds a time and an item at once; CSV is for other programs, too.</source>
        <translation>Beide lassen sich hier wieder öffnen und plotten. SQLite findet Zeit und Element sofort; CSV ist auch für andere Programme.</translation>
    </message>
    <message>
        <source>CSV files (*.csv)</source>
        <translation>CSV-Dateien (*.csv)</translation>
    </message>
    <message>
        <source>CSV, one file after the other</source>
        <translation>CSV, eine Datei nach der anderen</translation>
    </message>
    <message>
        <source>Chooses the file.</source>
        <translation>Wählt die Datei.</translation>
    </message>
    <message>
        <source>Each file gets the time of its beginning in its name; none is written over.</source>
        <translation>Jede Datei bekommt die Zeit ihres Beginns in den Namen; keine wird überschrieben.</translation>
    </message>
    <message>
        <source>How It Is Recorded</source>
        <translation>Wie aufgezeichnet wird</translation>
    </message>
    <message>
        <source>Keep at &amp;most:</source>
        <translation>&amp;Höchstens behalten:</translation>
    </message>
    <message>
        <source>Keep for at m&amp;ost:</source>
        <translation>Höchs&amp;tens so lange behalten:</translation>
    </message>
    <message>
        <source>Older records are deleted, and a mark in the recording says so.</source>
        <translation>Ältere Datensätze werden gelöscht, und ein Vermerk in der Aufzeichnung sagt es.</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Aufzeichnung läuft</translation>
    </message>
    <message>
        <source>Recordings (*.sqlite)</source>
        <translation>Aufzeichnungen (*.sqlite)</translation>
    </message>
    <message>
        <source>SQLite, one file</source>
        <translation>SQLite, eine Datei</translation>
    </message>
    <message>
        <source>Values come once a server is connected; until then the recording has a gap that it tells of.</source>
        <translation>Werte kommen, sobald ein Server verbunden ist; bis dahin hat die Aufzeichnung eine Lücke, die sie nennt.</translation>
    </message>
    <message>
        <source>With less room recording pauses, says so, and goes on when there is room again.</source>
        <translation>Bei weniger Platz pausiert die Aufzeichnung, sagt es und geht weiter, wenn wieder Platz ist.</translation>
    </message>
    <message>
        <source>any size</source>
        <translation>jede Größe</translation>
    </message>
    <message>
        <source>any time</source>
        <translation>jede Zeit</translation>
    </message>
    <message>
        <source>ever</source>
        <translation>für immer</translation>
    </message>
    <message>
        <source>everything</source>
        <translation>alles</translation>
    </message>
    <message>
        <source>nothing</source>
        <translation>nichts</translation>
    </message>
    <message>
        <source>or af&amp;ter:</source>
        <translation>oder na&amp;ch:</translation>
    </message>
</context>
<context>
    <name>QlumLoggerView</name>
    <message>
        <source>%1 are free. What comes meanwhile is kept in memory as long as there is room.</source>
        <translation>%1 sind frei. Was inzwischen kommt, bleibt im Speicher, solange dort Platz ist.</translation>
    </message>
    <message numerus="yes">
        <source>%n item(s)</source>
        <translation>
            <numerusform>%n Element</numerusform>
            <numerusform>%n Elemente</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n item(s); what is not touched stays as each of them has it</source>
        <translation>
            <numerusform>%n Element; was nicht angefasst wird, bleibt, wie es ist</numerusform>
            <numerusform>%n Elemente; was nicht angefasst wird, bleibt, wie jedes es hat</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Commands</source>
        <translation>&amp;Befehle</translation>
    </message>
    <message>
        <source>&amp;Note...</source>
        <translation>&amp;Notiz...</translation>
    </message>
    <message>
        <source>&amp;Open a Recording...</source>
        <translation>Aufzeichnung ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>&amp;Recording Settings...</source>
        <translation>Aufzeichnungs&amp;einstellungen...</translation>
    </message>
    <message>
        <source>&amp;Start</source>
        <translation>&amp;Start</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>A&amp;nhalten</translation>
    </message>
    <message>
        <source>&lt;b&gt;Ask Servers Again&lt;/b&gt;&lt;br&gt;Tries once more to have items watched that servers have refused.</source>
        <translation>&lt;b&gt;Server erneut fragen&lt;/b&gt;&lt;br&gt;Versucht noch einmal, Elemente überwachen zu lassen, die Server abgelehnt haben.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Note&lt;/b&gt;&lt;br&gt;Records a text of yours with the time of now.</source>
        <translation>&lt;b&gt;Notiz&lt;/b&gt;&lt;br&gt;Zeichnet einen Text von Ihnen mit der jetzigen Zeit auf.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Open a Recording&lt;/b&gt;&lt;br&gt;Shows a recording that was made here or elsewhere; no server is needed.</source>
        <translation>&lt;b&gt;Aufzeichnung öffnen&lt;/b&gt;&lt;br&gt;Zeigt eine Aufzeichnung, die hier oder anderswo gemacht wurde; es wird kein Server gebraucht.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Recording Settings&lt;/b&gt;&lt;br&gt;The file, how much room is left on the disk, and how much of the past is kept.</source>
        <translation>&lt;b&gt;Aufzeichnungseinstellungen&lt;/b&gt;&lt;br&gt;Die Datei, wie viel Platz auf der Festplatte frei bleibt und wie viel Vergangenes behalten wird.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Remove&lt;/b&gt;&lt;br&gt;Takes the selected items out of this view. What is recorded of them stays.</source>
        <translation>&lt;b&gt;Entfernen&lt;/b&gt;&lt;br&gt;Nimmt die gewählten Elemente aus dieser Ansicht. Was von ihnen aufgezeichnet ist, bleibt.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Settings of Items&lt;/b&gt;&lt;br&gt;How the selected items are watched: intervals, queue, deadband.</source>
        <translation>&lt;b&gt;Einstellungen der Elemente&lt;/b&gt;&lt;br&gt;Wie die gewählten Elemente überwacht werden: Intervalle, Warteschlange, Totband.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Settings of the View&lt;/b&gt;&lt;br&gt;How all items are watched that have no settings of their own.</source>
        <translation>&lt;b&gt;Einstellungen der Ansicht&lt;/b&gt;&lt;br&gt;Wie alle Elemente überwacht werden, die keine eigenen Einstellungen haben.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Show Recording&lt;/b&gt;&lt;br&gt;Shows what is in the file of this view: items, events, values.</source>
        <translation>&lt;b&gt;Aufzeichnung zeigen&lt;/b&gt;&lt;br&gt;Zeigt, was in der Datei dieser Ansicht steht: Elemente, Ereignisse, Werte.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Start&lt;/b&gt;&lt;br&gt;Records all items that are not switched off, until you press Stop.</source>
        <translation>&lt;b&gt;Start&lt;/b&gt;&lt;br&gt;Zeichnet alle nicht ausgeschalteten Elemente auf, bis Sie „Anhalten“ drücken.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Switch Items Off&lt;/b&gt;&lt;br&gt;The selected items are not recorded any more, while the others are.</source>
        <translation>&lt;b&gt;Elemente ausschalten&lt;/b&gt;&lt;br&gt;Die gewählten Elemente werden nicht mehr aufgezeichnet, die anderen schon.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Switch Items On&lt;/b&gt;&lt;br&gt;Has the selected items recorded.</source>
        <translation>&lt;b&gt;Elemente einschalten&lt;/b&gt;&lt;br&gt;Lässt die gewählten Elemente aufzeichnen.</translation>
    </message>
    <message>
        <source>All items of this view that have no settings of their own</source>
        <translation>Alle Elemente dieser Ansicht, die keine eigenen Einstellungen haben</translation>
    </message>
    <message>
        <source>Ask Servers A&amp;gain</source>
        <translation>Server &amp;erneut fragen</translation>
    </message>
    <message>
        <source>Data Logger View</source>
        <translation>Datenlogger</translation>
    </message>
    <message>
        <source>Drop variables or branches here from the Address Space window, or choose &quot;Add to Data Logger View&quot; in the menu of a node. Then press Start.</source>
        <translation>Legen Sie Variablen oder Zweige aus dem Adressraumfenster hier ab, oder wählen Sie im Menü eines Knotens „Zu Datenlogger hinzufügen“. Drücken Sie dann „Start“.</translation>
    </message>
    <message>
        <source>File, free space, and how much is kept</source>
        <translation>Datei, freier Platz und wie viel behalten wird</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Filter by server, node, name or state</source>
        <translation>Nach Server, Knoten, Name oder Zustand filtern</translation>
    </message>
    <message>
        <source>Is recorded with the time at which you press OK:</source>
        <translation>Wird mit der Zeit aufgezeichnet, zu der Sie OK drücken:</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Notiz</translation>
    </message>
    <message>
        <source>Open a Recording</source>
        <translation>Aufzeichnung öffnen</translation>
    </message>
    <message>
        <source>Re&amp;move</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Reading names and types of variables</source>
        <translation>Namen und Typen von Variablen lesen</translation>
    </message>
    <message>
        <source>Recorded items</source>
        <translation>Aufgezeichnete Elemente</translation>
    </message>
    <message>
        <source>Recording Se&amp;ttings...</source>
        <translation>Aufzeichnungseins&amp;tellungen...</translation>
    </message>
    <message>
        <source>Recording pauses, since the disk is nearly full.</source>
        <translation>Die Aufzeichnung pausiert, weil die Festplatte fast voll ist.</translation>
    </message>
    <message>
        <source>Recordings (*.sqlite *.csv);;All files (*)</source>
        <translation>Aufzeichnungen (*.sqlite *.csv);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Records a note of yours with the time</source>
        <translation>Zeichnet eine Notiz von Ihnen mit der Zeit auf</translation>
    </message>
    <message>
        <source>Settings of &amp;Items...</source>
        <translation>E&amp;instellungen der Elemente...</translation>
    </message>
    <message>
        <source>Settings of the &amp;View...</source>
        <translation>Einstellungen der &amp;Ansicht...</translation>
    </message>
    <message>
        <source>Show &amp;Recording</source>
        <translation>Aufzeichnung &amp;zeigen</translation>
    </message>
    <message>
        <source>Shows the rows only that have this text.</source>
        <translation>Zeigt nur die Zeilen, die diesen Text enthalten.</translation>
    </message>
    <message>
        <source>Starts or stops recording</source>
        <translation>Beginnt oder beendet die Aufzeichnung</translation>
    </message>
    <message>
        <source>Switch Items O&amp;ff</source>
        <translation>Elemente a&amp;usschalten</translation>
    </message>
    <message>
        <source>Switch Items O&amp;n</source>
        <translation>Elemente ei&amp;nschalten</translation>
    </message>
    <message>
        <source>The new settings hold from the next start on.</source>
        <translation>Die neuen Einstellungen gelten ab dem nächsten Start.</translation>
    </message>
    <message>
        <source>The recording cannot be written.</source>
        <translation>Die Aufzeichnung kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>The recording that runs goes on as it is.</source>
        <translation>Die laufende Aufzeichnung geht unverändert weiter.</translation>
    </message>
    <message>
        <source>What can be done with items, recordings and the view.</source>
        <translation>Was sich mit Elementen, Aufzeichnungen und der Ansicht tun lässt.</translation>
    </message>
    <message>
        <source>What comes meanwhile is kept in memory as long as there is room.</source>
        <translation>Was inzwischen kommt, bleibt im Speicher, solange dort Platz ist.</translation>
    </message>
    <message>
        <source>What has been recorded so far</source>
        <translation>Was bisher aufgezeichnet wurde</translation>
    </message>
</context>
<context>
    <name>QlumMainActions</name>
    <message>
        <source>&amp;About Tavelin</source>
        <translation>&amp;Über Tavelin</translation>
    </message>
    <message>
        <source>&amp;Add...</source>
        <translation>&amp;Hinzufügen...</translation>
    </message>
    <message>
        <source>&amp;Check for Updates...</source>
        <translation>Nach Aktualisierungen &amp;suchen...</translation>
    </message>
    <message>
        <source>&amp;Clear Log</source>
        <translation>Protokoll &amp;leeren</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>&amp;Configure Tavelin...</source>
        <translation>Tavelin &amp;einstellen...</translation>
    </message>
    <message>
        <source>&amp;Connect</source>
        <translation>&amp;Verbinden</translation>
    </message>
    <message>
        <source>&amp;Disconnect</source>
        <translation>&amp;Trennen</translation>
    </message>
    <message>
        <source>&amp;Document</source>
        <translation>Do&amp;kument</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Find Node...</source>
        <translation>Knoten &amp;suchen...</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Journal...</source>
        <translation>&amp;Journal...</translation>
    </message>
    <message>
        <source>&amp;Keyboard Shortcuts...</source>
        <translation>Tasten&amp;kürzel...</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <source>&amp;Plugins...</source>
        <translation>&amp;Plugins...</translation>
    </message>
    <message>
        <source>&amp;Properties...</source>
        <translation>E&amp;igenschaften...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>&amp;Report a bug...</source>
        <translation>&amp;Fehler melden...</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>&amp;Save Log</source>
        <translation>Protokoll s&amp;peichern</translation>
    </message>
    <message>
        <source>&amp;Server</source>
        <translation>&amp;Server</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>&amp;Einstellungen</translation>
    </message>
    <message>
        <source>&amp;Tavelin Manual</source>
        <translation>&amp;Tavelin-Handbuch</translation>
    </message>
    <message>
        <source>&amp;Tip of the Day</source>
        <translation>Tipp des Ta&amp;ges</translation>
    </message>
    <message>
        <source>&amp;What&apos;s This?</source>
        <translation>&amp;Was ist das?</translation>
    </message>
    <message>
        <source>&lt;b&gt;About Tavelin&lt;/b&gt;&lt;br&gt;Shows the versions of Tavelin and its parts and the licenses.</source>
        <translation>&lt;b&gt;Über Tavelin&lt;/b&gt;&lt;br&gt;Zeigt die Versionen von Tavelin und seinen Teilen und die Lizenzen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Add Document&lt;/b&gt;&lt;br&gt;Opens a view, for example one that watches values or one that shows events.</source>
        <translation>&lt;b&gt;Dokument hinzufügen&lt;/b&gt;&lt;br&gt;Öffnet eine Ansicht, zum Beispiel eine, die Werte überwacht oder Ereignisse zeigt.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Add Server&lt;/b&gt;&lt;br&gt;Adds a server to the project. Its address, security and user are asked for.</source>
        <translation>&lt;b&gt;Server hinzufügen&lt;/b&gt;&lt;br&gt;Fügt dem Projekt einen Server hinzu. Nach Adresse, Sicherheit und Benutzer wird gefragt.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Change User&lt;/b&gt;&lt;br&gt;Continues the session with the selected server as another user.</source>
        <translation>&lt;b&gt;Benutzer wechseln&lt;/b&gt;&lt;br&gt;Setzt die Sitzung mit dem gewählten Server als anderer Benutzer fort.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Check for Updates&lt;/b&gt;&lt;br&gt;Asks for the newest version of Tavelin.</source>
        <translation>&lt;b&gt;Nach Aktualisierungen suchen&lt;/b&gt;&lt;br&gt;Fragt nach der neuesten Version von Tavelin.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Clear Log&lt;/b&gt;&lt;br&gt;Removes all entries from the log window.</source>
        <translation>&lt;b&gt;Protokoll leeren&lt;/b&gt;&lt;br&gt;Entfernt alle Einträge aus dem Protokollfenster.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Close Tab&lt;/b&gt;&lt;br&gt;Closes the document in front and removes it from the project.</source>
        <translation>&lt;b&gt;Reiter schließen&lt;/b&gt;&lt;br&gt;Schließt das vorderste Dokument und entfernt es aus dem Projekt.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Command Palette&lt;/b&gt;&lt;br&gt;Finds commands, servers, settings, projects and nodes by a few letters, and does what is chosen.</source>
        <translation>&lt;b&gt;Befehlspalette&lt;/b&gt;&lt;br&gt;Findet Befehle, Server, Einstellungen, Projekte und Knoten über ein paar Buchstaben und führt das Gewählte aus.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Configure Tavelin&lt;/b&gt;&lt;br&gt;Time-outs, log and trace, and other settings.</source>
        <translation>&lt;b&gt;Tavelin einstellen&lt;/b&gt;&lt;br&gt;Zeitlimits, Protokoll und Trace und andere Einstellungen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Connect Server&lt;/b&gt;&lt;br&gt;Opens a session with the selected server and shows its address space. When the connection was lost, tries at once to restore it instead of waiting for the next attempt.</source>
        <translation>&lt;b&gt;Server verbinden&lt;/b&gt;&lt;br&gt;Öffnet eine Sitzung mit dem gewählten Server und zeigt seinen Adressraum. War die Verbindung verloren, wird sofort versucht, sie wiederherzustellen, statt auf den nächsten Versuch zu warten.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Diagnose Connection&lt;/b&gt;&lt;br&gt;Tries the connection to the selected server step by step, says where it stops and on whose side, and offers what helps.</source>
        <translation>&lt;b&gt;Verbindung diagnostizieren&lt;/b&gt;&lt;br&gt;Versucht die Verbindung zum gewählten Server Schritt für Schritt, sagt, wo sie scheitert und auf wessen Seite, und bietet an, was hilft.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Disconnect Server&lt;/b&gt;&lt;br&gt;Closes the session with the selected server.</source>
        <translation>&lt;b&gt;Server trennen&lt;/b&gt;&lt;br&gt;Schließt die Sitzung mit dem gewählten Server.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Export Branch&lt;/b&gt;&lt;br&gt;Writes all nodes below the selected one to a file.</source>
        <translation>&lt;b&gt;Zweig exportieren&lt;/b&gt;&lt;br&gt;Schreibt alle Knoten unter dem gewählten in eine Datei.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Find Node Below&lt;/b&gt;&lt;br&gt;Searches the nodes below the selected one.</source>
        <translation>&lt;b&gt;Knoten darunter suchen&lt;/b&gt;&lt;br&gt;Durchsucht die Knoten unter dem gewählten.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Find Node&lt;/b&gt;&lt;br&gt;Searches all nodes of the selected server by name, id, class, type and more.</source>
        <translation>&lt;b&gt;Knoten suchen&lt;/b&gt;&lt;br&gt;Durchsucht alle Knoten des gewählten Servers nach Name, Id, Klasse, Typ und mehr.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Journal&lt;/b&gt;&lt;br&gt;Shows what was changed on servers, when, by whom, and what it came to.</source>
        <translation>&lt;b&gt;Journal&lt;/b&gt;&lt;br&gt;Zeigt, was auf Servern geändert wurde, wann, durch wen und mit welchem Ergebnis.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Keyboard Shortcuts&lt;/b&gt;&lt;br&gt;Lists all commands that have a key.</source>
        <translation>&lt;b&gt;Tastenkürzel&lt;/b&gt;&lt;br&gt;Führt alle Befehle auf, die eine Taste haben.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Manage Certificates&lt;/b&gt;&lt;br&gt;Tavelin&apos;s own certificate and those that it trusts or rejects.</source>
        <translation>&lt;b&gt;Zertifikate verwalten&lt;/b&gt;&lt;br&gt;Tavelins eigenes Zertifikat und die, denen es vertraut oder die es ablehnt.</translation>
    </message>
    <message>
        <source>&lt;b&gt;New&lt;/b&gt;&lt;br&gt;Closes all servers and documents and begins an empty project.</source>
        <translation>&lt;b&gt;Neu&lt;/b&gt;&lt;br&gt;Schließt alle Server und Dokumente und beginnt ein leeres Projekt.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Open&lt;/b&gt;&lt;br&gt;Loads servers, documents and their settings from a project file.</source>
        <translation>&lt;b&gt;Öffnen&lt;/b&gt;&lt;br&gt;Lädt Server, Dokumente und ihre Einstellungen aus einer Projektdatei.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Plugins&lt;/b&gt;&lt;br&gt;Shows all loaded plugins and the interfaces they implement.</source>
        <translation>&lt;b&gt;Plugins&lt;/b&gt;&lt;br&gt;Zeigt alle geladenen Plugins und die Schnittstellen, die sie umsetzen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Quit&lt;/b&gt;&lt;br&gt;Disconnects all servers and ends Tavelin.</source>
        <translation>&lt;b&gt;Beenden&lt;/b&gt;&lt;br&gt;Trennt alle Server und beendet Tavelin.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Rebrowse&lt;/b&gt;&lt;br&gt;Reads the nodes below the selected node from the server again.</source>
        <translation>&lt;b&gt;Neu durchsuchen&lt;/b&gt;&lt;br&gt;Liest die Knoten unter dem gewählten Knoten erneut vom Server.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Remove Document&lt;/b&gt;&lt;br&gt;Closes the selected document and removes it from the project.</source>
        <translation>&lt;b&gt;Dokument entfernen&lt;/b&gt;&lt;br&gt;Schließt das gewählte Dokument und entfernt es aus dem Projekt.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Remove Server&lt;/b&gt;&lt;br&gt;Disconnects the selected server and removes it from the project.</source>
        <translation>&lt;b&gt;Server entfernen&lt;/b&gt;&lt;br&gt;Trennt den gewählten Server und entfernt ihn aus dem Projekt.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Report a bug&lt;/b&gt;&lt;br&gt;Prepares an e-mail with the versions of all parts.</source>
        <translation>&lt;b&gt;Fehler melden&lt;/b&gt;&lt;br&gt;Bereitet eine E-Mail mit den Versionen aller Teile vor.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Report for Support&lt;/b&gt;&lt;br&gt;Collects versions, settings, log and traces in one file, without passwords, and shows them before.</source>
        <translation>&lt;b&gt;Bericht für den Support&lt;/b&gt;&lt;br&gt;Sammelt Versionen, Einstellungen, Protokoll und Traces in einer Datei, ohne Kennwörter, und zeigt sie vorher.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Save As&lt;/b&gt;&lt;br&gt;Writes the project to another file.</source>
        <translation>&lt;b&gt;Speichern unter&lt;/b&gt;&lt;br&gt;Schreibt das Projekt in eine andere Datei.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Save Log&lt;/b&gt;&lt;br&gt;Writes the entries of the log window to a text file.</source>
        <translation>&lt;b&gt;Protokoll speichern&lt;/b&gt;&lt;br&gt;Schreibt die Einträge des Protokollfensters in eine Textdatei.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Save&lt;/b&gt;&lt;br&gt;Writes the project to its file. Passwords are never written.</source>
        <translation>&lt;b&gt;Speichern&lt;/b&gt;&lt;br&gt;Schreibt das Projekt in seine Datei. Kennwörter werden nie geschrieben.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Server Properties&lt;/b&gt;&lt;br&gt;Shows and changes the connection settings of the selected server.</source>
        <translation>&lt;b&gt;Servereigenschaften&lt;/b&gt;&lt;br&gt;Zeigt und ändert die Verbindungseinstellungen des gewählten Servers.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Tavelin Manual&lt;/b&gt;&lt;br&gt;Opens the manual.</source>
        <translation>&lt;b&gt;Tavelin-Handbuch&lt;/b&gt;&lt;br&gt;Öffnet das Handbuch.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Tip of the Day&lt;/b&gt;&lt;br&gt;Shows what many users do not know about Tavelin.</source>
        <translation>&lt;b&gt;Tipp des Tages&lt;/b&gt;&lt;br&gt;Zeigt, was viele Benutzer an Tavelin nicht kennen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;What&apos;s This?&lt;/b&gt;&lt;br&gt;Click on a part of the window to read what it is for.</source>
        <translation>&lt;b&gt;Was ist das?&lt;/b&gt;&lt;br&gt;Klicken Sie auf einen Teil des Fensters, um zu lesen, wofür er da ist.</translation>
    </message>
    <message>
        <source>Add Document</source>
        <translation>Dokument hinzufügen</translation>
    </message>
    <message>
        <source>Add Server</source>
        <translation>Server hinzufügen</translation>
    </message>
    <message>
        <source>Change &amp;User...</source>
        <translation>&amp;Benutzer wechseln...</translation>
    </message>
    <message>
        <source>Change User...</source>
        <translation>Benutzer wechseln...</translation>
    </message>
    <message>
        <source>Close Tab</source>
        <translation>Reiter schließen</translation>
    </message>
    <message>
        <source>Command &amp;Palette...</source>
        <translation>Befehls&amp;palette...</translation>
    </message>
    <message>
        <source>Command Palette...</source>
        <translation>Befehlspalette...</translation>
    </message>
    <message>
        <source>Connect Server</source>
        <translation>Server verbinden</translation>
    </message>
    <message>
        <source>Dia&amp;gnose Connection...</source>
        <translation>Verbindung dia&amp;gnostizieren...</translation>
    </message>
    <message>
        <source>Diagnose Connection...</source>
        <translation>Verbindung diagnostizieren...</translation>
    </message>
    <message>
        <source>Disconnect Server</source>
        <translation>Server trennen</translation>
    </message>
    <message>
        <source>Document Toolbar</source>
        <translation>Dokument-Symbolleiste</translation>
    </message>
    <message>
        <source>E&amp;xport Branch...</source>
        <translation>Zweig e&amp;xportieren...</translation>
    </message>
    <message>
        <source>File Toolbar</source>
        <translation>Datei-Symbolleiste</translation>
    </message>
    <message>
        <source>Find Node &amp;Below...</source>
        <translation>Knoten &amp;darunter suchen...</translation>
    </message>
    <message>
        <source>Find Node...</source>
        <translation>Knoten suchen...</translation>
    </message>
    <message>
        <source>Journal...</source>
        <translation>Journal...</translation>
    </message>
    <message>
        <source>Keyboard Shortcuts...</source>
        <translation>Tastenkürzel...</translation>
    </message>
    <message>
        <source>Manage Certificates...</source>
        <translation>Zertifikate verwalten...</translation>
    </message>
    <message>
        <source>New Project</source>
        <translation>Neues Projekt</translation>
    </message>
    <message>
        <source>Open Project</source>
        <translation>Projekt öffnen</translation>
    </message>
    <message>
        <source>Quit Tavelin</source>
        <translation>Tavelin beenden</translation>
    </message>
    <message>
        <source>Rebrowse</source>
        <translation>Neu durchsuchen</translation>
    </message>
    <message>
        <source>Remove Document</source>
        <translation>Dokument entfernen</translation>
    </message>
    <message>
        <source>Remove Server</source>
        <translation>Server entfernen</translation>
    </message>
    <message>
        <source>Report for &amp;Support...</source>
        <translation>Be&amp;richt für den Support...</translation>
    </message>
    <message>
        <source>Report for Support...</source>
        <translation>Bericht für den Support...</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Speichern &amp;unter...</translation>
    </message>
    <message>
        <source>Save Project</source>
        <translation>Projekt speichern</translation>
    </message>
    <message>
        <source>Save Project As...</source>
        <translation>Projekt speichern unter...</translation>
    </message>
    <message>
        <source>Server Properties...</source>
        <translation>Servereigenschaften...</translation>
    </message>
    <message>
        <source>Server Toolbar</source>
        <translation>Server-Symbolleiste</translation>
    </message>
    <message>
        <source>Show or hide the %1</source>
        <translation>%1 zeigen oder verbergen</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Ansicht</translation>
    </message>
</context>
<context>
    <name>QlumMarkModel</name>
    <message>
        <source>Count</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>Event</source>
        <translation>Ereignis</translation>
    </message>
    <message>
        <source>From</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>Item</source>
        <translation>Element</translation>
    </message>
    <message>
        <source>Sequence Numbers</source>
        <translation>Sequenznummern</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>To</source>
        <translation>Bis</translation>
    </message>
</context>
<context>
    <name>QlumMatrixPage</name>
    <message>
        <source> (0 to %1)</source>
        <translation> (0 bis %1)</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Fill</source>
        <translation>A&amp;uffüllen</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>Ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy&lt;/b&gt;&lt;br&gt;Puts the selected cells on the clipboard as spreadsheets take them.</source>
        <translation>&lt;b&gt;Kopieren&lt;/b&gt;&lt;br&gt;Legt die gewählten Zellen in die Zwischenablage, wie Tabellenprogramme sie nehmen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Fill&lt;/b&gt;&lt;br&gt;Gives all selected cells the value of the current one.</source>
        <translation>&lt;b&gt;Auffüllen&lt;/b&gt;&lt;br&gt;Gibt allen gewählten Zellen den Wert der aktuellen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Open&lt;/b&gt;&lt;br&gt;Shows the element with all its fields in a window of its own.</source>
        <translation>&lt;b&gt;Öffnen&lt;/b&gt;&lt;br&gt;Zeigt das Element mit allen Feldern in einem eigenen Fenster.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Paste&lt;/b&gt;&lt;br&gt;Takes the cells that were copied in a spreadsheet, from the first selected cell on. The matrix keeps its shape.</source>
        <translation>&lt;b&gt;Einfügen&lt;/b&gt;&lt;br&gt;Nimmt die in einem Tabellenprogramm kopierten Zellen, ab der ersten gewählten. Die Matrix behält ihre Form.</translation>
    </message>
    <message>
        <source>Copy the selected cells</source>
        <translation>Die gewählten Zellen kopieren</translation>
    </message>
    <message>
        <source>Dimension %1</source>
        <translation>Dimension %1</translation>
    </message>
    <message>
        <source>Dimension %1:</source>
        <translation>Dimension %1:</translation>
    </message>
    <message>
        <source>Edit the element in a window of its own</source>
        <translation>Das Element in einem eigenen Fenster bearbeiten</translation>
    </message>
    <message>
        <source>Give all selected cells the value of the current one</source>
        <translation>Allen gewählten Zellen den Wert der aktuellen geben</translation>
    </message>
    <message>
        <source>Matrix</source>
        <translation>Matrix</translation>
    </message>
    <message>
        <source>Matrix of %1 elements of type %2</source>
        <translation>Matrix von %1 Elementen vom Typ %2</translation>
    </message>
    <message>
        <source>Paste cells, from the first selected one on</source>
        <translation>Zellen einfügen, ab der ersten gewählten</translation>
    </message>
    <message>
        <source>The index in this dimension of what the grid shows</source>
        <translation>Der Index in dieser Dimension dessen, was das Gitter zeigt</translation>
    </message>
    <message>
        <source>The matrix has no elements.</source>
        <translation>Die Matrix hat keine Elemente.</translation>
    </message>
</context>
<context>
    <name>QlumMeasuredArgumentsDialog</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>&amp;Next...</source>
        <translation>&amp;Weiter...</translation>
    </message>
    <message>
        <source>Arguments</source>
        <translation>Argumente</translation>
    </message>
    <message>
        <source>Each call of the run has these arguments.</source>
        <translation>Jeder Aufruf des Laufs hat diese Argumente.</translation>
    </message>
</context>
<context>
    <name>QlumMeasuredNodesModel</name>
    <message>
        <source>%1 (not there)</source>
        <translation>%1 (nicht vorhanden)</translation>
    </message>
    <message>
        <source>Its server has no such namespace now.</source>
        <translation>Sein Server hat jetzt keinen solchen Namensraum.</translation>
    </message>
    <message>
        <source>Node</source>
        <translation>Knoten</translation>
    </message>
    <message>
        <source>Node Id</source>
        <translation>NodeId</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
</context>
<context>
    <name>QlumMeasurement</name>
    <message>
        <source>Browse</source>
        <translation>Durchsuchen</translation>
    </message>
    <message>
        <source>Call</source>
        <translation>Call</translation>
    </message>
    <message>
        <source>CreateMonitoredItems and DeleteMonitoredItems</source>
        <translation>CreateMonitoredItems und DeleteMonitoredItems</translation>
    </message>
    <message>
        <source>CreateSession and CloseSession</source>
        <translation>CreateSession und CloseSession</translation>
    </message>
    <message>
        <source>Delay of notifications</source>
        <translation>Verzögerung von Notifications</translation>
    </message>
    <message>
        <source>Read</source>
        <translation>Read</translation>
    </message>
    <message>
        <source>Read of registered nodes</source>
        <translation>Read registrierter Knoten</translation>
    </message>
    <message>
        <source>TranslateBrowsePathsToNodeIds</source>
        <translation>TranslateBrowsePathsToNodeIds</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>Write</translation>
    </message>
</context>
<context>
    <name>QlumMeasurer</name>
    <message numerus="yes">
        <source>%n value(s) came with a bad status.</source>
        <translation>
            <numerusform>%n Wert kam mit schlechtem Status.</numerusform>
            <numerusform>%n Werte kamen mit schlechtem Status.</numerusform>
        </translation>
    </message>
    <message>
        <source>Cancelled. What was measured before counts.</source>
        <translation>Abgebrochen. Was vorher gemessen wurde, zählt.</translation>
    </message>
    <message>
        <source>Measuring: %1</source>
        <translation>Messen: %1</translation>
    </message>
    <message>
        <source>Nothing was measured: %1.</source>
        <translation>Es wurde nichts gemessen: %1.</translation>
    </message>
    <message>
        <source>Other programs used %1 % of this machine meanwhile: the longest durations may be theirs.</source>
        <translation>Andere Programme nutzten inzwischen %1 % dieses Rechners: Die längsten Dauern können ihre sein.</translation>
    </message>
    <message>
        <source>The clock of this machine goes in steps of %1 us: that shows in the figures.</source>
        <translation>Die Uhr dieses Rechners geht in Schritten von %1 us: Das zeigt sich in den Zahlen.</translation>
    </message>
    <message>
        <source>The run broke off: %1. What was measured before counts.</source>
        <translation>Der Lauf brach ab: %1. Was vorher gemessen wurde, zählt.</translation>
    </message>
    <message>
        <source>The server does not take %1 nodes in a call: %2 were sent.</source>
        <translation>Der Server nimmt keine %1 Knoten in einem Aufruf: %2 wurden gesendet.</translation>
    </message>
    <message>
        <source>There was no memory for all samples.</source>
        <translation>Für alle Messwerte reichte der Speicher nicht.</translation>
    </message>
</context>
<context>
    <name>QlumMessageBar</name>
    <message>
        <source>%1: %2 %3</source>
        <translation>%1: %2 %3</translation>
    </message>
    <message>
        <source>&lt;b&gt;Close&lt;/b&gt;&lt;br&gt;Takes the message away. The log keeps it.</source>
        <translation>&lt;b&gt;Schließen&lt;/b&gt;&lt;br&gt;Nimmt die Meldung weg. Das Protokoll behält sie.</translation>
    </message>
    <message>
        <source>Close message</source>
        <translation>Meldung schließen</translation>
    </message>
    <message>
        <source>Close this message</source>
        <translation>Diese Meldung schließen</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Notiz</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
</context>
<context>
    <name>QlumMethodArguments</name>
    <message>
        <source> array</source>
        <translation> als Array</translation>
    </message>
    <message>
        <source> of any shape</source>
        <translation> beliebiger Form</translation>
    </message>
    <message>
        <source> or array</source>
        <translation> oder Array</translation>
    </message>
</context>
<context>
    <name>QlumMethodCallModel</name>
    <message>
        <source>Duration</source>
        <translation>Dauer</translation>
    </message>
    <message>
        <source>Inputs</source>
        <translation>Eingaben</translation>
    </message>
    <message>
        <source>Outputs</source>
        <translation>Ausgaben</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
</context>
<context>
    <name>QlumMethodDialog</name>
    <message>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>%1 Duration: %2.</source>
        <translation>%1 Dauer: %2.</translation>
    </message>
    <message>
        <source>%1 came, %2 were declared.</source>
        <translation>%1 kamen, %2 waren angegeben.</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>&amp;Add Argument</source>
        <translation>Argument &amp;hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Call</source>
        <translation>A&amp;ufrufen</translation>
    </message>
    <message>
        <source>&amp;Call Again</source>
        <translation>&amp;Erneut aufrufen</translation>
    </message>
    <message>
        <source>&amp;Inputs</source>
        <translation>&amp;Eingaben</translation>
    </message>
    <message>
        <source>&amp;Object:</source>
        <translation>&amp;Objekt:</translation>
    </message>
    <message>
        <source>&amp;Remove Last</source>
        <translation>Letztes &amp;entfernen</translation>
    </message>
    <message>
        <source>&amp;Results</source>
        <translation>E&amp;rgebnisse</translation>
    </message>
    <message>
        <source>&amp;Show This Call Again</source>
        <translation>Diesen Aufruf wieder &amp;zeigen</translation>
    </message>
    <message>
        <source>&amp;Time-out:</source>
        <translation>Zei&amp;tlimit:</translation>
    </message>
    <message>
        <source>&lt;b&gt;Add Argument&lt;/b&gt;&lt;br&gt;Some servers describe their methods wrongly. This sends one argument more, of any type.</source>
        <translation>&lt;b&gt;Argument hinzufügen&lt;/b&gt;&lt;br&gt;Manche Server beschreiben ihre Methoden falsch. Das sendet ein Argument mehr, von beliebigem Typ.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Choose&lt;/b&gt;&lt;br&gt;Not every server tells which objects of a type it has. This chooses one in the address space.</source>
        <translation>&lt;b&gt;Wählen&lt;/b&gt;&lt;br&gt;Nicht jeder Server sagt, welche Objekte eines Typs er hat. Das wählt eines im Adressraum.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Object&lt;/b&gt;&lt;br&gt;The method was found on a type; this is the object of that type on which it is called.</source>
        <translation>&lt;b&gt;Objekt&lt;/b&gt;&lt;br&gt;Die Methode wurde an einem Typ gefunden; das ist das Objekt dieses Typs, an dem sie aufgerufen wird.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Remove Last&lt;/b&gt;&lt;br&gt;Sends the method without its last argument.</source>
        <translation>&lt;b&gt;Letztes entfernen&lt;/b&gt;&lt;br&gt;Sendet die Methode ohne ihr letztes Argument.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Show This Call Again&lt;/b&gt;&lt;br&gt;Takes the inputs of the selected call over, so that it can be made again or changed, and shows what it returned.</source>
        <translation>&lt;b&gt;Diesen Aufruf wieder zeigen&lt;/b&gt;&lt;br&gt;Übernimmt die Eingaben des gewählten Aufrufs, um ihn zu wiederholen oder zu ändern, und zeigt, was er lieferte.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Time-out&lt;/b&gt;&lt;br&gt;How long the call waits for the server. A method that takes longer goes on there, and its results are lost.</source>
        <translation>&lt;b&gt;Zeitlimit&lt;/b&gt;&lt;br&gt;Wie lange der Aufruf auf den Server wartet. Eine Methode, die länger braucht, läuft dort weiter, und ihre Ergebnisse gehen verloren.</translation>
    </message>
    <message>
        <source>Argument %1</source>
        <translation>Argument %1</translation>
    </message>
    <message>
        <source>C&amp;hoose...</source>
        <translation>&amp;Wählen...</translation>
    </message>
    <message>
        <source>Ca&amp;ncel</source>
        <translation>Abbre&amp;chen</translation>
    </message>
    <message>
        <source>Call %1</source>
        <translation>%1 aufrufen</translation>
    </message>
    <message>
        <source>Call %1 of %2</source>
        <translation>Aufruf %1 von %2</translation>
    </message>
    <message>
        <source>Call Method</source>
        <translation>Methode aufrufen</translation>
    </message>
    <message>
        <source>Call of method &apos;%1&apos; on &apos;%2&apos;: %3</source>
        <translation>Aufruf der Methode „%1“ an „%2“: %3</translation>
    </message>
    <message>
        <source>Call the method with these inputs</source>
        <translation>Die Methode mit diesen Eingaben aufrufen</translation>
    </message>
    <message>
        <source>Calls &amp;so far</source>
        <translation>&amp;Bisherige Aufrufe</translation>
    </message>
    <message>
        <source>Calls so far</source>
        <translation>Bisherige Aufrufe</translation>
    </message>
    <message>
        <source>Cancel %1</source>
        <translation>%1 abbrechen</translation>
    </message>
    <message>
        <source>Choose the object in the address space</source>
        <translation>Das Objekt im Adressraum wählen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Give the call up and ask the server to end it</source>
        <translation>Den Aufruf aufgeben und den Server bitten, ihn zu beenden</translation>
    </message>
    <message>
        <source>How long the call waits for the server</source>
        <translation>Wie lange der Aufruf auf den Server wartet</translation>
    </message>
    <message>
        <source>It belongs to a type, and the server does not tell its objects. Choose one.</source>
        <translation>Sie gehört zu einem Typ, und der Server nennt dessen Objekte nicht. Wählen Sie eines.</translation>
    </message>
    <message>
        <source>It can be called all the same; the server then decides.</source>
        <translation>Sie kann trotzdem aufgerufen werden; dann entscheidet der Server.</translation>
    </message>
    <message>
        <source>It is not on the server any more: its namespace has gone.</source>
        <translation>Sie ist nicht mehr auf dem Server: Ihr Namensraum ist verschwunden.</translation>
    </message>
    <message>
        <source>Method Plugin</source>
        <translation>Plugin Methoden</translation>
    </message>
    <message>
        <source>No call has been made yet.</source>
        <translation>Es gab noch keinen Aufruf.</translation>
    </message>
    <message>
        <source>Object</source>
        <translation>Objekt</translation>
    </message>
    <message>
        <source>Output %1</source>
        <translation>Ausgabe %1</translation>
    </message>
    <message>
        <source>Reading the arguments of a method</source>
        <translation>Die Argumente einer Methode lesen</translation>
    </message>
    <message>
        <source>Send one argument less</source>
        <translation>Ein Argument weniger senden</translation>
    </message>
    <message>
        <source>Send one argument more than the method declares</source>
        <translation>Ein Argument mehr senden, als die Methode angibt</translation>
    </message>
    <message>
        <source>Take the inputs of this call over, and show what it returned</source>
        <translation>Die Eingaben dieses Aufrufs übernehmen und zeigen, was er lieferte</translation>
    </message>
    <message>
        <source>The arguments are being read...</source>
        <translation>Die Argumente werden gelesen...</translation>
    </message>
    <message>
        <source>The arguments are not known.</source>
        <translation>Die Argumente sind nicht bekannt.</translation>
    </message>
    <message>
        <source>The call failed; the log says more.</source>
        <translation>Der Aufruf ist fehlgeschlagen; mehr steht im Protokoll.</translation>
    </message>
    <message>
        <source>The data types of the server are being read; those of the arguments are among them...</source>
        <translation>Die Datentypen des Servers werden gelesen; die der Argumente gehören dazu...</translation>
    </message>
    <message>
        <source>The method cannot be called.</source>
        <translation>Die Methode kann nicht aufgerufen werden.</translation>
    </message>
    <message>
        <source>The method has answered. The data types of the server are being read, by which its results are shown...</source>
        <translation>Die Methode hat geantwortet. Die Datentypen des Servers werden gelesen, nach denen ihre Ergebnisse angezeigt werden...</translation>
    </message>
    <message>
        <source>The method has been running for %1...</source>
        <translation>Die Methode läuft seit %1...</translation>
    </message>
    <message>
        <source>The method has not been called yet.</source>
        <translation>Die Methode wurde noch nicht aufgerufen.</translation>
    </message>
    <message>
        <source>The method has returned fewer values than its description says.</source>
        <translation>Die Methode hat weniger Werte geliefert, als ihre Beschreibung sagt.</translation>
    </message>
    <message>
        <source>The method takes no arguments.</source>
        <translation>Die Methode hat keine Argumente.</translation>
    </message>
    <message>
        <source>The method was not called yet. Press Call again to call it all the same.</source>
        <translation>Die Methode wurde noch nicht aufgerufen. Drücken Sie noch einmal „Aufrufen“, um es trotzdem zu tun.</translation>
    </message>
    <message>
        <source>The method was not called.</source>
        <translation>Die Methode wurde nicht aufgerufen.</translation>
    </message>
    <message>
        <source>The object on which the method is called</source>
        <translation>Das Objekt, an dem die Methode aufgerufen wird</translation>
    </message>
    <message>
        <source>The server does not end it: %1.</source>
        <translation>Der Server beendet sie nicht: %1.</translation>
    </message>
    <message>
        <source>The server knows of no such request any more.</source>
        <translation>Der Server kennt keine solche Anfrage mehr.</translation>
    </message>
    <message>
        <source>The server says that it has ended the request.</source>
        <translation>Der Server sagt, dass er die Anfrage beendet hat.</translation>
    </message>
    <message>
        <source>The server says that the method cannot be executed at the moment.</source>
        <translation>Der Server sagt, dass die Methode im Moment nicht ausgeführt werden kann.</translation>
    </message>
    <message>
        <source>The server was removed from the project.</source>
        <translation>Der Server wurde aus dem Projekt entfernt.</translation>
    </message>
    <message>
        <source>Time-out</source>
        <translation>Zeitlimit</translation>
    </message>
    <message>
        <source>Try &amp;Again</source>
        <translation>&amp;Erneut versuchen</translation>
    </message>
    <message>
        <source>What arguments the method takes could not be read. They can be added by hand.</source>
        <translation>Welche Argumente die Methode hat, konnte nicht gelesen werden. Sie können von Hand hinzugefügt werden.</translation>
    </message>
    <message>
        <source>What became of the call</source>
        <translation>Was aus dem Aufruf wurde</translation>
    </message>
    <message>
        <source>What was called can still be looked at.</source>
        <translation>Was aufgerufen wurde, kann noch angesehen werden.</translation>
    </message>
    <message>
        <source>any type, not declared</source>
        <translation>beliebiger Typ, nicht angegeben</translation>
    </message>
    <message>
        <source>calling...</source>
        <translation>wird aufgerufen...</translation>
    </message>
    <message>
        <source>data types are being read...</source>
        <translation>Datentypen werden gelesen...</translation>
    </message>
    <message>
        <source>method-calls</source>
        <translation>methodenaufrufe</translation>
    </message>
    <message>
        <source>reading...</source>
        <translation>wird gelesen...</translation>
    </message>
</context>
<context>
    <name>QlumMethodJob</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Output %1 (not declared)</source>
        <translation>Ausgabe %1 (nicht angegeben)</translation>
    </message>
</context>
<context>
    <name>QlumMethodWords</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>%1 The method says: %2.</source>
        <translation>%1 Die Methode sagt: %2.</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message numerus="yes">
        <source>%n argument(s) were sent. The server wants another number than its description says: add arguments, or remove some, and call again.</source>
        <translation>
            <numerusform>%n Argument wurde gesendet. Der Server will eine andere Zahl, als seine Beschreibung sagt: Fügen Sie Argumente hinzu oder entfernen Sie welche, und rufen Sie erneut auf.</numerusform>
            <numerusform>%n Argumente wurden gesendet. Der Server will eine andere Zahl, als seine Beschreibung sagt: Fügen Sie Argumente hinzu oder entfernen Sie welche, und rufen Sie erneut auf.</numerusform>
        </translation>
    </message>
    <message>
        <source>Called, nothing returned.</source>
        <translation>Aufgerufen, nichts geliefert.</translation>
    </message>
    <message>
        <source>Called.</source>
        <translation>Aufgerufen.</translation>
    </message>
    <message>
        <source>The call did not succeed: %1.</source>
        <translation>Der Aufruf war nicht erfolgreich: %1.</translation>
    </message>
    <message>
        <source>The call was given up here. The method may still run on the server.</source>
        <translation>Der Aufruf wurde hier aufgegeben. Die Methode läuft vielleicht auf dem Server noch.</translation>
    </message>
    <message>
        <source>The method may have run, or still run, on the server.</source>
        <translation>Die Methode ist vielleicht auf dem Server gelaufen oder läuft noch.</translation>
    </message>
    <message>
        <source>The method was not called. %1.</source>
        <translation>Die Methode wurde nicht aufgerufen. %1.</translation>
    </message>
    <message>
        <source>The method was refused or failed: %1.</source>
        <translation>Die Methode wurde abgelehnt oder ist fehlgeschlagen: %1.</translation>
    </message>
    <message>
        <source>The server refuses this argument: %1.</source>
        <translation>Der Server lehnt dieses Argument ab: %1.</translation>
    </message>
    <message>
        <source>an argument has another type than the method expects</source>
        <translation>ein Argument hat einen anderen Typ, als die Methode erwartet</translation>
    </message>
    <message>
        <source>an argument is outside what the method allows</source>
        <translation>ein Argument liegt außerhalb dessen, was die Methode erlaubt</translation>
    </message>
    <message>
        <source>given up</source>
        <translation>aufgegeben</translation>
    </message>
    <message>
        <source>service: %1</source>
        <translation>Dienst: %1</translation>
    </message>
    <message>
        <source>the method cannot be called in the present state</source>
        <translation>die Methode kann im jetzigen Zustand nicht aufgerufen werden</translation>
    </message>
    <message>
        <source>the method cannot be executed</source>
        <translation>die Methode kann nicht ausgeführt werden</translation>
    </message>
    <message>
        <source>the method was called with too many arguments</source>
        <translation>die Methode wurde mit zu vielen Argumenten aufgerufen</translation>
    </message>
    <message>
        <source>the user who is logged in may not call it</source>
        <translation>der angemeldete Benutzer darf sie nicht aufrufen</translation>
    </message>
</context>
<context>
    <name>QlumModelEvents</name>
    <message>
        <source>AddressSpaceModel</source>
        <translation>AddressSpaceModel</translation>
    </message>
    <message>
        <source>Changes of the address space</source>
        <translation>Änderungen des Adressraums</translation>
    </message>
    <message>
        <source>Register for ModelChangeEvents failed: createMonitoredItems returned %1</source>
        <translation>Anmelden für ModelChangeEvents fehlgeschlagen: createMonitoredItems ergab %1</translation>
    </message>
    <message>
        <source>Register for ModelChangeEvents failed: createMonitoredItems returned %1 for item 0</source>
        <translation>Anmelden für ModelChangeEvents fehlgeschlagen: createMonitoredItems ergab %1 für Element 0</translation>
    </message>
    <message>
        <source>Register for ModelChangeEvents failed: createSubscription returned %1</source>
        <translation>Anmelden für ModelChangeEvents fehlgeschlagen: createSubscription ergab %1</translation>
    </message>
    <message>
        <source>Register for ModelChangeEvents failed: deleteSubscription returned %1</source>
        <translation>Anmelden für ModelChangeEvents fehlgeschlagen: deleteSubscription ergab %1</translation>
    </message>
    <message>
        <source>Registered for ModelChangeEvents</source>
        <translation>Für ModelChangeEvents angemeldet</translation>
    </message>
    <message>
        <source>Unregister for ModelChangeEvents returned %1</source>
        <translation>Abmelden von ModelChangeEvents ergab %1</translation>
    </message>
</context>
<context>
    <name>QlumModifiedModel</name>
    <message>
        <source>Modification</source>
        <translation>Änderung</translation>
    </message>
    <message>
        <source>Modified At</source>
        <translation>Geändert am</translation>
    </message>
    <message>
        <source>Server Timestamp</source>
        <translation>Serverzeitstempel</translation>
    </message>
    <message>
        <source>Source Timestamp</source>
        <translation>Quellzeitstempel</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>User</source>
        <translation>Benutzer</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Variable</source>
        <translation>Variable</translation>
    </message>
    <message>
        <source>deleted</source>
        <translation>gelöscht</translation>
    </message>
    <message>
        <source>inserted</source>
        <translation>eingefügt</translation>
    </message>
    <message>
        <source>replaced</source>
        <translation>ersetzt</translation>
    </message>
    <message>
        <source>updated</source>
        <translation>aktualisiert</translation>
    </message>
</context>
<context>
    <name>QlumMonitoredItemModel</name>
    <message>
        <source>           Operand [%1]: %2</source>
        <translation>           Operand [%1]: %2</translation>
    </message>
    <message>
        <source>        AttributeId: %1</source>
        <translation>        AttributeId: %1</translation>
    </message>
    <message>
        <source>        BrowsePath: %1</source>
        <translation>        BrowsePath: %1</translation>
    </message>
    <message>
        <source>        OperandStatusCodes:</source>
        <translation>        OperandStatusCodes:</translation>
    </message>
    <message>
        <source>        TypeDefinitionId: %1</source>
        <translation>        TypeDefinitionId: %1</translation>
    </message>
    <message>
        <source>    Element [%1]: %2</source>
        <translation>    Element [%1]: %2</translation>
    </message>
    <message>
        <source>    SelectClause [%1]:</source>
        <translation>    SelectClause [%1]:</translation>
    </message>
    <message>
        <source>    SelectClause [%1]: %2</source>
        <translation>    SelectClause [%1]: %2</translation>
    </message>
    <message>
        <source>Browse of event type %1 failed [ret = %2].</source>
        <translation>Durchsuchen des Ereignistyps %1 fehlgeschlagen [ret = %2].</translation>
    </message>
    <message>
        <source>Browse of event types failed [ret = %1].</source>
        <translation>Durchsuchen der Ereignistypen fehlgeschlagen [ret = %1].</translation>
    </message>
    <message>
        <source>Call ConditionRefresh returned %1 for ServerId %2.</source>
        <translation>Der Aufruf von ConditionRefresh ergab %1 für ServerId %2.</translation>
    </message>
    <message>
        <source>Call Republish failed (ret = %1)</source>
        <translation>Aufruf von Republish fehlgeschlagen (ret = %1)</translation>
    </message>
    <message>
        <source>Calling ConditionRefresh to get current conditions</source>
        <translation>ConditionRefresh wird aufgerufen, um die aktuellen Bedingungen zu erhalten</translation>
    </message>
    <message>
        <source>Calling Republish with sequence number %1</source>
        <translation>Republish wird mit Sequenznummer %1 aufgerufen</translation>
    </message>
    <message>
        <source>Can&apos;t find namespace of node %1 in changed namespace table, removing it from view</source>
        <translation>Der Namensraum von Knoten %1 ist in der geänderten Namensraumtabelle nicht zu finden; der Knoten wird aus der Ansicht entfernt</translation>
    </message>
    <message>
        <source>Cancelled; &quot;Apply&quot; asks the server again</source>
        <translation>Abgebrochen; „Anwenden“ fragt den Server erneut</translation>
    </message>
    <message>
        <source>Changing the fields of events</source>
        <translation>Die Felder von Ereignissen ändern</translation>
    </message>
    <message>
        <source>CreateMonitoredItems failed with error &apos;%1&apos;</source>
        <translation>CreateMonitoredItems ist mit dem Fehler „%1“ fehlgeschlagen</translation>
    </message>
    <message>
        <source>CreateMonitoredItems succeeded</source>
        <translation>CreateMonitoredItems war erfolgreich</translation>
    </message>
    <message>
        <source>CreateSubscription failed with error %1.</source>
        <translation>CreateSubscription ist mit dem Fehler %1 fehlgeschlagen.</translation>
    </message>
    <message>
        <source>CreateSubscription succeeded.</source>
        <translation>CreateSubscription war erfolgreich.</translation>
    </message>
    <message>
        <source>Creating new subscription: ClientHandle=%1, PublishingEnable=%2, LifeTimeCount=%3, MaxKeepAliveCount=%4, Priority=%5, PublishingInterval=%6</source>
        <translation>Neue Subscription wird angelegt: ClientHandle=%1, PublishingEnable=%2, LifeTimeCount=%3, MaxKeepAliveCount=%4, Priority=%5, PublishingInterval=%6</translation>
    </message>
    <message>
        <source>DeleteMonitoredItems failed with error %1.</source>
        <translation>DeleteMonitoredItems ist mit dem Fehler %1 fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Ending the subscription to events</source>
        <translation>Die Subscription für Ereignisse beenden</translation>
    </message>
    <message>
        <source>Event Plugin</source>
        <translation>Plugin Ereignisse</translation>
    </message>
    <message>
        <source>Fetching lost events</source>
        <translation>Verlorene Ereignisse holen</translation>
    </message>
    <message>
        <source>HistoryReadEvent on node %1 returned %2 events [%3]</source>
        <translation>HistoryReadEvent an Knoten %1 lieferte %2 Ereignisse [%3]</translation>
    </message>
    <message>
        <source>HistoryReadEvent on node %1 returned error [%2]</source>
        <translation>HistoryReadEvent an Knoten %1 lieferte einen Fehler [%2]</translation>
    </message>
    <message>
        <source>Item %1 failed [ret = %4]</source>
        <translation>Element %1 fehlgeschlagen [ret = %4]</translation>
    </message>
    <message>
        <source>Item %1 failed with error %2.</source>
        <translation>Element %1 ist mit dem Fehler %2 fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Item %1 succeeded: RevisedQueueSize=%2, RevisedSamplingInterval=%3 [ret = %4]</source>
        <translation>Element %1 erfolgreich: RevisedQueueSize=%2, RevisedSamplingInterval=%3 [ret = %4]</translation>
    </message>
    <message>
        <source>Item %1: QueueSize=%2, SamplingInterval=%3</source>
        <translation>Element %1: QueueSize=%2, SamplingInterval=%3</translation>
    </message>
    <message>
        <source>ModifyMonitoredItems failed with error %1.</source>
        <translation>ModifyMonitoredItems ist mit dem Fehler %1 fehlgeschlagen.</translation>
    </message>
    <message>
        <source>ModifyMonitoredItems succeeded.</source>
        <translation>ModifyMonitoredItems war erfolgreich.</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>No session exists for server %1, skip calling refresh.</source>
        <translation>Für Server %1 gibt es keine Sitzung, die Auffrischung entfällt.</translation>
    </message>
    <message>
        <source>No subscription exists for server %1, skip calling refresh.</source>
        <translation>Für Server %1 gibt es keine Subscription, die Auffrischung entfällt.</translation>
    </message>
    <message>
        <source>NodeId</source>
        <translation>NodeId</translation>
    </message>
    <message>
        <source>Only the first %1 events of %2 on %3 were read; there are more.</source>
        <translation>Nur die ersten %1 Ereignisse von %2 auf %3 wurden gelesen; es gibt mehr.</translation>
    </message>
    <message>
        <source>Reading event history</source>
        <translation>Ereignishistorie lesen</translation>
    </message>
    <message>
        <source>Received RefreshRequiredEvent, calling ConditionRefresh</source>
        <translation>RefreshRequiredEvent empfangen, ConditionRefresh wird aufgerufen</translation>
    </message>
    <message>
        <source>Refreshing conditions</source>
        <translation>Bedingungen auffrischen</translation>
    </message>
    <message>
        <source>Refused: %1</source>
        <translation>Abgelehnt: %1</translation>
    </message>
    <message>
        <source>Removing event notifiers</source>
        <translation>Ereignis-Notifier entfernen</translation>
    </message>
    <message>
        <source>Revised values: LifeTimeCount=%1, MaxKeepAliveCount=%2, Priority=%3, PublishingInterval=%4, SubscriptionId=%5</source>
        <translation>Gewährte Werte: LifeTimeCount=%1, MaxKeepAliveCount=%2, Priority=%3, PublishingInterval=%4, SubscriptionId=%5</translation>
    </message>
    <message>
        <source>SelectClause:</source>
        <translation>SelectClause:</translation>
    </message>
    <message>
        <source>SelectClauseResult:</source>
        <translation>SelectClauseResult:</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Server returned more ContinuationPoints than accepted by setting &apos;General.MaxBrowseNextCalls&apos;. Releasing current ContinuationPoint.</source>
        <translation>Der Server hat mehr ContinuationPoints geliefert, als die Einstellung „General.MaxBrowseNextCalls“ zulässt. Der aktuelle ContinuationPoint wird freigegeben.</translation>
    </message>
    <message>
        <source>Session could be restored, calling ConditionRefresh</source>
        <translation>Die Sitzung wurde wiederhergestellt, ConditionRefresh wird aufgerufen</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Status of subscription %1 changed to %2</source>
        <translation>Der Status der Subscription %1 wechselte zu %2</translation>
    </message>
    <message>
        <source>Subscribing to events</source>
        <translation>Ereignisse abonnieren</translation>
    </message>
    <message>
        <source>The history of %1 on %2 could not be read.</source>
        <translation>Die Historie von %1 auf %2 konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The server has ended the subscription %1 times; it is made again with the next connection.</source>
        <translation>Der Server hat die Subscription %1-mal beendet; sie wird mit der nächsten Verbindung wieder angelegt.</translation>
    </message>
    <message>
        <source>Waiting for the connection</source>
        <translation>Warten auf die Verbindung</translation>
    </message>
    <message>
        <source>Waiting for the server</source>
        <translation>Warten auf den Server</translation>
    </message>
    <message>
        <source>Watched</source>
        <translation>Überwacht</translation>
    </message>
    <message>
        <source>Watched as before; the change was refused: %1</source>
        <translation>Überwacht wie bisher; die Änderung wurde abgelehnt: %1</translation>
    </message>
    <message>
        <source>Watched, changes not applied yet</source>
        <translation>Überwacht, Änderungen noch nicht angewendet</translation>
    </message>
    <message>
        <source>WhereClauseResult:</source>
        <translation>WhereClauseResult:</translation>
    </message>
</context>
<context>
    <name>QlumNameplateModel</name>
    <message>
        <source>Device</source>
        <translation>Gerät</translation>
    </message>
    <message>
        <source>Health</source>
        <translation>Gesundheit</translation>
    </message>
    <message>
        <source>The model of devices wants this fact, but the server does not have it.</source>
        <translation>Das Gerätemodell verlangt diese Angabe, aber der Server hat sie nicht.</translation>
    </message>
</context>
<context>
    <name>QlumNetworkWatch</name>
    <message>
        <source>Changes of the network cannot be noticed any longer.</source>
        <translation>Änderungen des Netzes können nicht mehr bemerkt werden.</translation>
    </message>
    <message>
        <source>Changes of the network cannot be noticed.</source>
        <translation>Änderungen des Netzes können nicht bemerkt werden.</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>Netzwerk</translation>
    </message>
</context>
<context>
    <name>QlumNewCertificateDlg</name>
    <message>
        <source>%1 bits</source>
        <translation>%1 Bits</translation>
    </message>
    <message>
        <source>&amp;Country:</source>
        <translation>&amp;Land:</translation>
    </message>
    <message>
        <source>&amp;Domain Names:</source>
        <translation>&amp;Domänennamen:</translation>
    </message>
    <message>
        <source>&amp;IP Addresses:</source>
        <translation>&amp;IP-Adressen:</translation>
    </message>
    <message>
        <source>&amp;Locality:</source>
        <translation>Or&amp;t:</translation>
    </message>
    <message>
        <source>&amp;Password protect private key</source>
        <translation>&amp;Privaten Schlüssel mit Kennwort schützen</translation>
    </message>
    <message>
        <source>&amp;State:</source>
        <translation>&amp;Bundesland:</translation>
    </message>
    <message>
        <source>(Two letter code, e.g. DE, US, ...)</source>
        <translation>(Zwei Buchstaben, z. B. DE, US, ...)</translation>
    </message>
    <message>
        <source>1 Day</source>
        <translation>1 Tag</translation>
    </message>
    <message>
        <source>1 Hour</source>
        <translation>1 Stunde</translation>
    </message>
    <message>
        <source>1 Month</source>
        <translation>1 Monat</translation>
    </message>
    <message>
        <source>1 Week</source>
        <translation>1 Woche</translation>
    </message>
    <message>
        <source>1 Year</source>
        <translation>1 Jahr</translation>
    </message>
    <message>
        <source>10 Years</source>
        <translation>10 Jahre</translation>
    </message>
    <message>
        <source>2 Years</source>
        <translation>2 Jahre</translation>
    </message>
    <message>
        <source>20 Years</source>
        <translation>20 Jahre</translation>
    </message>
    <message>
        <source>3 Years</source>
        <translation>3 Jahre</translation>
    </message>
    <message>
        <source>4 Years</source>
        <translation>4 Jahre</translation>
    </message>
    <message>
        <source>5 Years</source>
        <translation>5 Jahre</translation>
    </message>
    <message>
        <source>&lt;b&gt;Application URI&lt;/b&gt;&lt;br&gt;The worldwide name of this installation, made of the host, the organization and the common name.</source>
        <translation>&lt;b&gt;Anwendungs-URI&lt;/b&gt;&lt;br&gt;Der weltweite Name dieser Installation, gebildet aus Host, Organisation und allgemeinem Namen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Common Name&lt;/b&gt;&lt;br&gt;What this installation is called; servers show it in their lists.</source>
        <translation>&lt;b&gt;Allgemeiner Name&lt;/b&gt;&lt;br&gt;Wie diese Installation heißt; Server zeigen ihn in ihren Listen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Country&lt;/b&gt;&lt;br&gt;The two letters of the country.</source>
        <translation>&lt;b&gt;Land&lt;/b&gt;&lt;br&gt;Die zwei Buchstaben des Landes.</translation>
    </message>
    <message>
        <source>Add DNS Name</source>
        <translation>DNS-Namen hinzufügen</translation>
    </message>
    <message>
        <source>Add IP Address</source>
        <translation>IP-Adresse hinzufügen</translation>
    </message>
    <message>
        <source>Add to %1</source>
        <translation>Zu %1 hinzufügen</translation>
    </message>
    <message>
        <source>Add...</source>
        <translation>Hinzufügen...</translation>
    </message>
    <message>
        <source>After this time a new certificate is needed</source>
        <translation>Nach dieser Zeit wird ein neues Zertifikat gebraucht</translation>
    </message>
    <message>
        <source>Application U&amp;RI:</source>
        <translation>Anwendungs-U&amp;RI:</translation>
    </message>
    <message>
        <source>Application URI</source>
        <translation>Anwendungs-URI</translation>
    </message>
    <message>
        <source>At least one domain name or IP address is needed.</source>
        <translation>Mindestens ein Domänenname oder eine IP-Adresse wird gebraucht.</translation>
    </message>
    <message>
        <source>Certificate &amp;Validity:</source>
        <translation>Gültig&amp;keit des Zertifikats:</translation>
    </message>
    <message>
        <source>Certificate Settings</source>
        <translation>Zertifikatseinstellungen</translation>
    </message>
    <message>
        <source>Common &amp;Name:</source>
        <translation>Allgemeiner &amp;Name:</translation>
    </message>
    <message>
        <source>Could Not Create Certificate</source>
        <translation>Zertifikat konnte nicht erstellt werden</translation>
    </message>
    <message>
        <source>Domain Names</source>
        <translation>Domänennamen</translation>
    </message>
    <message>
        <source>Enter the DNS name to add:</source>
        <translation>Geben Sie den DNS-Namen ein:</translation>
    </message>
    <message>
        <source>Enter the IP address to add:</source>
        <translation>Geben Sie die IP-Adresse ein:</translation>
    </message>
    <message>
        <source>Generating a key of %1...</source>
        <translation>Ein Schlüssel mit %1 wird erzeugt...</translation>
    </message>
    <message>
        <source>Generating the key</source>
        <translation>Schlüssel erzeugen</translation>
    </message>
    <message>
        <source>IP Addresses</source>
        <translation>IP-Adressen</translation>
    </message>
    <message>
        <source>It is not recommended to use certificates with a lifetime greater than 5 years.</source>
        <translation>Zertifikate mit einer Gültigkeit von mehr als 5 Jahren sind nicht zu empfehlen.</translation>
    </message>
    <message>
        <source>Longer keys are safer and slower; many servers refuse 1024 bits</source>
        <translation>Längere Schlüssel sind sicherer und langsamer; viele Server lehnen 1024 Bits ab</translation>
    </message>
    <message>
        <source>Making a certificate</source>
        <translation>Ein Zertifikat erstellen</translation>
    </message>
    <message>
        <source>New Application Instance Certificate</source>
        <translation>Neues Anwendungszertifikat</translation>
    </message>
    <message>
        <source>OPC UA Information</source>
        <translation>OPC-UA-Angaben</translation>
    </message>
    <message>
        <source>Or&amp;ganization:</source>
        <translation>Or&amp;ganisation:</translation>
    </message>
    <message>
        <source>Organization &amp;Unit:</source>
        <translation>Organisations&amp;einheit:</translation>
    </message>
    <message>
        <source>Pass&amp;word:</source>
        <translation>Kenn&amp;wort:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Kennwort</translation>
    </message>
    <message>
        <source>Password (r&amp;epeat):</source>
        <translation>Kennwort (Wieder&amp;holung):</translation>
    </message>
    <message>
        <source>Password (repeat)</source>
        <translation>Kennwort (Wiederholung)</translation>
    </message>
    <message>
        <source>Please ensure to enter a valid DNS name!
Enter the DNS name to add:</source>
        <translation>Bitte geben Sie einen gültigen DNS-Namen ein!
Geben Sie den DNS-Namen ein:</translation>
    </message>
    <message>
        <source>Please ensure to enter a valid IPv4 or IPv6 address!
Enter the IP address to add:</source>
        <translation>Bitte geben Sie eine gültige IPv4- oder IPv6-Adresse ein!
Geben Sie die IP-Adresse ein:</translation>
    </message>
    <message>
        <source>RSA &amp;Key Strength:</source>
        <translation>RSA-&amp;Schlüsselstärke:</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Remove from %1</source>
        <translation>Aus %1 entfernen</translation>
    </message>
    <message>
        <source>S&amp;top</source>
        <translation>A&amp;nhalten</translation>
    </message>
    <message>
        <source>Security Warning</source>
        <translation>Sicherheitswarnung</translation>
    </message>
    <message>
        <source>Sha1 is for old servers only</source>
        <translation>Sha1 ist nur für alte Server</translation>
    </message>
    <message>
        <source>Sha384</source>
        <translation>Sha384</translation>
    </message>
    <message>
        <source>Sha512</source>
        <translation>Sha512</translation>
    </message>
    <message>
        <source>Signature &amp;Algorithm:</source>
        <translation>Signatur&amp;algorithmus:</translation>
    </message>
    <message>
        <source>Stop generating the key and go back to the settings</source>
        <translation>Das Erzeugen des Schlüssels anhalten und zu den Einstellungen zurückkehren</translation>
    </message>
    <message>
        <source>Subject:</source>
        <translation>Inhaber:</translation>
    </message>
    <message>
        <source>The application URI is missing.</source>
        <translation>Die Anwendungs-URI fehlt.</translation>
    </message>
    <message>
        <source>The application certificate could not be created:</source>
        <translation>Das Anwendungszertifikat konnte nicht erstellt werden:</translation>
    </message>
    <message>
        <source>The common name is missing.</source>
        <translation>Der allgemeine Name fehlt.</translation>
    </message>
    <message>
        <source>The country needs a two letter code.</source>
        <translation>Das Land braucht zwei Buchstaben.</translation>
    </message>
    <message>
        <source>The organization is missing.</source>
        <translation>Die Organisation fehlt.</translation>
    </message>
    <message>
        <source>The password needs at least %1 characters.</source>
        <translation>Das Kennwort braucht mindestens %1 Zeichen.</translation>
    </message>
    <message>
        <source>The two passwords are different.</source>
        <translation>Die beiden Kennwörter sind verschieden.</translation>
    </message>
    <message>
        <source>You can protect the access to your private key with a password. Enabling this causes the uawidgets to prompt you with a password dialog at startup.</source>
        <translation>Sie können den Zugriff auf Ihren privaten Schlüssel mit einem Kennwort schützen. Dann fragt Tavelin bei jedem Start nach dem Kennwort.</translation>
    </message>
</context>
<context>
    <name>QlumNodeAddress</name>
    <message>
        <source>A name of the browse path is empty, or its namespace is none.</source>
        <translation>Ein Name des Pfads ist leer, oder sein Namensraum ist keiner.</translation>
    </message>
    <message>
        <source>The browse path is too long.</source>
        <translation>Der Pfad ist zu lang.</translation>
    </message>
    <message>
        <source>The browse path names the root only.</source>
        <translation>Der Pfad nennt nur die Wurzel.</translation>
    </message>
    <message>
        <source>The server has no namespace &quot;%1&quot;.</source>
        <translation>Der Server hat keinen Namensraum „%1“.</translation>
    </message>
    <message>
        <source>The server has no namespace %1.</source>
        <translation>Der Server hat keinen Namensraum %1.</translation>
    </message>
    <message>
        <source>There is no node id.</source>
        <translation>Es gibt keine NodeId.</translation>
    </message>
    <message>
        <source>This is neither a node id nor a browse path.</source>
        <translation>Das ist weder eine NodeId noch ein Pfad.</translation>
    </message>
    <message>
        <source>This is the null node id, which names no node.</source>
        <translation>Das ist die Null-NodeId, die keinen Knoten nennt.</translation>
    </message>
</context>
<context>
    <name>QlumNodeChooser</name>
    <message>
        <source>Address space</source>
        <translation>Adressraum</translation>
    </message>
    <message>
        <source>Choose a Node of %1</source>
        <translation>Einen Knoten von %1 wählen</translation>
    </message>
    <message>
        <source>No node is chosen yet.</source>
        <translation>Es ist noch kein Knoten gewählt.</translation>
    </message>
    <message>
        <source>Node id</source>
        <translation>NodeId</translation>
    </message>
</context>
<context>
    <name>QlumNodeCommands</name>
    <message>
        <source>&amp;Call...</source>
        <translation>&amp;Aufrufen...</translation>
    </message>
    <message>
        <source>&lt;b&gt;Add to %1&lt;/b&gt;&lt;br&gt;Shows the selected nodes in the document of this type that is in front, or in a new one.</source>
        <translation>&lt;b&gt;Zu %1 hinzufügen&lt;/b&gt;&lt;br&gt;Zeigt die gewählten Knoten im vordersten Dokument dieses Typs oder in einem neuen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Call&lt;/b&gt;&lt;br&gt;Asks for the arguments of the selected method and calls it.</source>
        <translation>&lt;b&gt;Aufrufen&lt;/b&gt;&lt;br&gt;Fragt nach den Argumenten der gewählten Methode und ruft sie auf.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Show in Address Space&lt;/b&gt;&lt;br&gt;Selects the node in the address space window.</source>
        <translation>&lt;b&gt;Im Adressraum zeigen&lt;/b&gt;&lt;br&gt;Wählt den Knoten im Adressraumfenster.</translation>
    </message>
    <message>
        <source>Add to %1</source>
        <translation>Zu %1 hinzufügen</translation>
    </message>
    <message>
        <source>Call Method</source>
        <translation>Methode aufrufen</translation>
    </message>
    <message>
        <source>Show in Address &amp;Space</source>
        <translation>Im Adre&amp;ssraum zeigen</translation>
    </message>
    <message>
        <source>Show the selected nodes in a document of this type</source>
        <translation>Die gewählten Knoten in einem Dokument dieses Typs zeigen</translation>
    </message>
</context>
<context>
    <name>QlumNodeCopier</name>
    <message>
        <source>&amp;Browse Paths (Index)</source>
        <translation>P&amp;fade (Index)</translation>
    </message>
    <message>
        <source>&amp;CSV</source>
        <translation>&amp;CSV</translation>
    </message>
    <message>
        <source>&amp;JSON</source>
        <translation>&amp;JSON</translation>
    </message>
    <message>
        <source>&amp;Telegraf Configuration</source>
        <translation>&amp;Telegraf-Konfiguration</translation>
    </message>
    <message>
        <source>A line for each node, for every server with that namespace: nsu=urn:plant;s=Pump</source>
        <translation>Eine Zeile je Knoten, für jeden Server mit diesem Namensraum: nsu=urn:plant;s=Pump</translation>
    </message>
    <message>
        <source>A line for each node, for every server with these namespaces</source>
        <translation>Eine Zeile je Knoten, für jeden Server mit diesen Namensräumen</translation>
    </message>
    <message>
        <source>A line for each node: /Objects/2:Plant/2:Pump</source>
        <translation>Eine Zeile je Knoten: /Objects/2:Plant/2:Pump</translation>
    </message>
    <message>
        <source>A line for each node: ns=2;s=Pump</source>
        <translation>Eine Zeile je Knoten: ns=2;s=Pump</translation>
    </message>
    <message>
        <source>A script that reads the nodes; user and password are to be filled in</source>
        <translation>Ein Skript, das die Knoten liest; Benutzer und Kennwort sind einzutragen</translation>
    </message>
    <message>
        <source>A table with nodes, values, statuses and times, which can be loaded again as a list of nodes or of new values</source>
        <translation>Eine Tabelle mit Knoten, Werten, Status und Zeiten, die wieder als Liste von Knoten oder neuen Werten geladen werden kann</translation>
    </message>
    <message>
        <source>An array of objects with nodes and values</source>
        <translation>Ein Array von Objekten mit Knoten und Werten</translation>
    </message>
    <message>
        <source>Browse &amp;Paths (URI)</source>
        <translation>&amp;Pfade (URI)</translation>
    </message>
    <message>
        <source>Browse paths or values of some nodes are missing.</source>
        <translation>Von einigen Knoten fehlen Pfade oder Werte.</translation>
    </message>
    <message>
        <source>Node Ids (&amp;Index)</source>
        <translation>NodeIds (&amp;Index)</translation>
    </message>
    <message>
        <source>Node Ids (&amp;URI)</source>
        <translation>NodeIds (&amp;URI)</translation>
    </message>
    <message>
        <source>P&amp;ython Script (asyncua)</source>
        <translation>P&amp;ython-Skript (asyncua)</translation>
    </message>
    <message>
        <source>Reading what is to be copied</source>
        <translation>Lesen, was kopiert werden soll</translation>
    </message>
    <message>
        <source>The nodes as an input of Telegraf; user and password are to be filled in</source>
        <translation>Die Knoten als Eingang von Telegraf; Benutzer und Kennwort sind einzutragen</translation>
    </message>
</context>
<context>
    <name>QlumNodeDetails</name>
    <message>
        <source>None</source>
        <translation>Keiner</translation>
    </message>
    <message>
        <source>Read</source>
        <translation>Read</translation>
    </message>
    <message>
        <source>Read and write</source>
        <translation>Lesen und schreiben</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>Write</translation>
    </message>
</context>
<context>
    <name>QlumNodeList</name>
    <message>
        <source>&quot;%1&quot; is no variable and has no value.</source>
        <translation>„%1“ ist keine Variable und hat keinen Wert.</translation>
    </message>
    <message>
        <source>Only the first %1 lines were taken; %2 are left out.</source>
        <translation>Nur die ersten %1 Zeilen wurden genommen; %2 sind weggelassen.</translation>
    </message>
    <message>
        <source>The browse path leads to another server.</source>
        <translation>Der Pfad führt zu einem anderen Server.</translation>
    </message>
    <message>
        <source>The server has no such node.</source>
        <translation>Der Server hat keinen solchen Knoten.</translation>
    </message>
    <message>
        <source>The server has nothing at this browse path. Names of other namespaces than 0 need their index: /Objects/2:Plant.</source>
        <translation>Der Server hat an diesem Pfad nichts. Namen anderer Namensräume als 0 brauchen ihren Index: /Objects/2:Plant.</translation>
    </message>
    <message>
        <source>There are no lines with nodes.</source>
        <translation>Es gibt keine Zeilen mit Knoten.</translation>
    </message>
</context>
<context>
    <name>QlumNodeSearch</name>
    <message>
        <source>Reading nodes for a search</source>
        <translation>Knoten für eine Suche lesen</translation>
    </message>
</context>
<context>
    <name>QlumNonNumericModel</name>
    <message>
        <source>Server Timestamp</source>
        <translation>Serverzeitstempel</translation>
    </message>
    <message>
        <source>Source Timestamp</source>
        <translation>Quellzeitstempel</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
</context>
<context>
    <name>QlumNotificationRun</name>
    <message numerus="yes">
        <source>%n value(s) had no time stamp of the server and are left out.</source>
        <translation>
            <numerusform>%n Wert hatte keinen Zeitstempel des Servers und ist weggelassen.</numerusform>
            <numerusform>%n Werte hatten keinen Zeitstempel des Servers und sind weggelassen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Cancelled. What was measured before counts.</source>
        <translation>Abgebrochen. Was vorher gemessen wurde, zählt.</translation>
    </message>
    <message>
        <source>Measuring: %1</source>
        <translation>Messen: %1</translation>
    </message>
    <message>
        <source>The difference between the clocks is not known: it is part of the delays.</source>
        <translation>Der Unterschied der Uhren ist nicht bekannt: Er steckt in den Verzögerungen.</translation>
    </message>
    <message>
        <source>The run broke off: %1.</source>
        <translation>Der Lauf brach ab: %1.</translation>
    </message>
    <message numerus="yes">
        <source>The server does not watch %n of the nodes.</source>
        <translation>
            <numerusform>Der Server überwacht %n der Knoten nicht.</numerusform>
            <numerusform>Der Server überwacht %n der Knoten nicht.</numerusform>
        </translation>
    </message>
    <message>
        <source>The server&apos;s clock is %1 ms ahead, give or take %2 ms; the delays take that into account.</source>
        <translation>Die Uhr des Servers geht %1 ms vor, auf %2 ms genau; die Verzögerungen berücksichtigen das.</translation>
    </message>
    <message>
        <source>The server&apos;s clock is %1 ms behind, give or take %2 ms; the delays take that into account.</source>
        <translation>Die Uhr des Servers geht %1 ms nach, auf %2 ms genau; die Verzögerungen berücksichtigen das.</translation>
    </message>
</context>
<context>
    <name>QlumOptionSetPage</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>%1 (no name)</source>
        <translation>%1 (ohne Namen)</translation>
    </message>
    <message>
        <source>&amp;Number:</source>
        <translation>&amp;Zahl:</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is neither a number nor names of bits.</source>
        <translation>„%1“ ist weder eine Zahl noch Namen von Bits.</translation>
    </message>
    <message>
        <source>Bit</source>
        <translation>Bit</translation>
    </message>
    <message>
        <source>Bits</source>
        <translation>Bits</translation>
    </message>
    <message>
        <source>Decimal, hexadecimal (0x21) or binary (0b100001), or names joined by |</source>
        <translation>Dezimal, hexadezimal (0x21) oder binär (0b100001), oder Namen, verbunden durch |</translation>
    </message>
    <message>
        <source>The number is too large. It takes: %1</source>
        <translation>Die Zahl ist zu groß. Erlaubt ist: %1</translation>
    </message>
    <message>
        <source>The option set has no bit %1.</source>
        <translation>Das OptionSet hat kein Bit %1.</translation>
    </message>
    <message>
        <source>Valid</source>
        <translation>Gültig</translation>
    </message>
</context>
<context>
    <name>QlumOwnCertificate</name>
    <message>
        <source>The certificate and its key could not be written to %1.</source>
        <translation>Das Zertifikat und sein Schlüssel konnten nicht nach %1 geschrieben werden.</translation>
    </message>
    <message>
        <source>The certificate could not be made: %1</source>
        <translation>Das Zertifikat konnte nicht erstellt werden: %1</translation>
    </message>
    <message>
        <source>The key could not be generated: %1</source>
        <translation>Der Schlüssel konnte nicht erzeugt werden: %1</translation>
    </message>
</context>
<context>
    <name>QlumPagedBytes</name>
    <message>
        <source>&amp;Go to byte:</source>
        <translation>&amp;Gehe zu Byte:</translation>
    </message>
    <message>
        <source>Bytes %1 to %2 of %3</source>
        <translation>Bytes %1 bis %2 von %3</translation>
    </message>
    <message>
        <source>Bytes are pairs of hexadecimal digits.</source>
        <translation>Bytes sind Paare hexadezimaler Ziffern.</translation>
    </message>
    <message>
        <source>First page</source>
        <translation>Erste Seite</translation>
    </message>
    <message>
        <source>Go to byte</source>
        <translation>Gehe zu Byte</translation>
    </message>
    <message>
        <source>Last page</source>
        <translation>Letzte Seite</translation>
    </message>
    <message>
        <source>Next page</source>
        <translation>Nächste Seite</translation>
    </message>
    <message>
        <source>Number of a byte, decimal or hexadecimal (0x100); Enter shows the page</source>
        <translation>Nummer eines Bytes, dezimal oder hexadezimal (0x100); die Eingabetaste zeigt die Seite</translation>
    </message>
    <message>
        <source>Previous page</source>
        <translation>Vorige Seite</translation>
    </message>
    <message>
        <source>These bytes cannot be edited as text: they are no UTF-8, or their line ends differ.</source>
        <translation>Diese Bytes können nicht als Text bearbeitet werden: Sie sind kein UTF-8, oder ihre Zeilenenden sind verschieden.</translation>
    </message>
    <message>
        <source>This is no Base64.</source>
        <translation>Das ist kein Base64.</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>What you pasted are no pairs of hexadecimal digits.</source>
        <translation>Was Sie eingefügt haben, sind keine Paare hexadezimaler Ziffern.</translation>
    </message>
    <message>
        <source>What you pasted is no Base64.</source>
        <translation>Was Sie eingefügt haben, ist kein Base64.</translation>
    </message>
</context>
<context>
    <name>QlumPaletteCommands</name>
    <message>
        <source>Address Space</source>
        <translation>Adressraum</translation>
    </message>
    <message>
        <source>Document</source>
        <translation>Dokument</translation>
    </message>
    <message>
        <source>New %1</source>
        <translation>Neu: %1</translation>
    </message>
    <message>
        <source>Node</source>
        <translation>Knoten</translation>
    </message>
    <message>
        <source>Recent Project</source>
        <translation>Letztes Projekt</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Einstellung</translation>
    </message>
</context>
<context>
    <name>QlumParameterModel</name>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>Access</source>
        <translation>Zugriff</translation>
    </message>
    <message>
        <source>Changed, not written yet; the device has %1</source>
        <translation>Geändert, noch nicht geschrieben; das Gerät hat %1</translation>
    </message>
    <message>
        <source>Groups</source>
        <translation>Gruppen</translation>
    </message>
    <message>
        <source>Parameter</source>
        <translation>Parameter</translation>
    </message>
    <message>
        <source>Range</source>
        <translation>Bereich</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Value of the type</source>
        <translation>Wert des Typs</translation>
    </message>
    <message>
        <source>Watched</source>
        <translation>Überwacht</translation>
    </message>
    <message>
        <source>Written</source>
        <translation>Geschrieben</translation>
    </message>
    <message>
        <source>Written, but it could not be read back</source>
        <translation>Geschrieben, aber nicht zurücklesbar</translation>
    </message>
    <message>
        <source>Written, but the device has taken %1 instead</source>
        <translation>Geschrieben, aber das Gerät hat stattdessen %1 übernommen</translation>
    </message>
    <message>
        <source>read and write</source>
        <translation>lesen und schreiben</translation>
    </message>
    <message>
        <source>read only</source>
        <translation>nur lesen</translation>
    </message>
</context>
<context>
    <name>QlumParameterPage</name>
    <message>
        <source>%1 cannot be edited.</source>
        <translation>%1 kann nicht bearbeitet werden.</translation>
    </message>
    <message>
        <source>&amp;Compare with Type...</source>
        <translation>Mit Typ &amp;vergleichen...</translation>
    </message>
    <message>
        <source>&amp;Discard</source>
        <translation>&amp;Verwerfen</translation>
    </message>
    <message>
        <source>&amp;Edit...</source>
        <translation>&amp;Bearbeiten...</translation>
    </message>
    <message>
        <source>&amp;Load Set...</source>
        <translation>Satz &amp;laden...</translation>
    </message>
    <message>
        <source>&amp;Read</source>
        <translation>&amp;Lesen</translation>
    </message>
    <message>
        <source>&amp;Save Set...</source>
        <translation>Satz &amp;speichern...</translation>
    </message>
    <message>
        <source>&amp;Write</source>
        <translation>&amp;Schreiben</translation>
    </message>
    <message>
        <source>&lt;b&gt;Write&lt;/b&gt;&lt;br&gt;Sends all changed values with one call and reads them back. What the device does not take stays changed and says why.</source>
        <translation>&lt;b&gt;Schreiben&lt;/b&gt;&lt;br&gt;Sendet alle geänderten Werte mit einem Aufruf und liest sie zurück. Was das Gerät nicht annimmt, bleibt geändert und sagt, warum.</translation>
    </message>
    <message>
        <source>All groups</source>
        <translation>Alle Gruppen</translation>
    </message>
    <message>
        <source>Changed, not written yet: %1</source>
        <translation>Geändert, noch nicht geschrieben: %1</translation>
    </message>
    <message>
        <source>Compare the device with a saved file and take values over</source>
        <translation>Das Gerät mit einer gespeicherten Datei vergleichen und Werte übernehmen</translation>
    </message>
    <message>
        <source>Edit the value of the selected parameter in a window</source>
        <translation>Den Wert des gewählten Parameters in einem Fenster bearbeiten</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Forget the changed values</source>
        <translation>Die geänderten Werte vergessen</translation>
    </message>
    <message>
        <source>Functional group</source>
        <translation>Funktionsgruppe</translation>
    </message>
    <message>
        <source>Parameters of the device</source>
        <translation>Parameter des Geräts</translation>
    </message>
    <message>
        <source>Read the parameters of the device again; changed values stay</source>
        <translation>Die Parameter des Geräts erneut lesen; geänderte Werte bleiben</translation>
    </message>
    <message>
        <source>Save the values that can be written to a file</source>
        <translation>Die schreibbaren Werte in eine Datei speichern</translation>
    </message>
    <message>
        <source>Select a device that has parameters.</source>
        <translation>Wählen Sie ein Gerät, das Parameter hat.</translation>
    </message>
    <message>
        <source>Show values as they change, as long as this is pressed</source>
        <translation>Werte zeigen, wie sie sich ändern, solange das gedrückt ist</translation>
    </message>
    <message>
        <source>Show where the device differs from the values of its type</source>
        <translation>Zeigen, worin das Gerät von den Werten seines Typs abweicht</translation>
    </message>
    <message>
        <source>Shows the parameters that have this text</source>
        <translation>Zeigt die Parameter, die diesen Text haben</translation>
    </message>
    <message>
        <source>The parameter is not shown any more.</source>
        <translation>Der Parameter wird nicht mehr gezeigt.</translation>
    </message>
    <message>
        <source>W&amp;atch</source>
        <translation>Über&amp;wachen</translation>
    </message>
    <message>
        <source>Write all changed values to the device in one go and read them back</source>
        <translation>Alle geänderten Werte auf einmal in das Gerät schreiben und zurücklesen</translation>
    </message>
</context>
<context>
    <name>QlumParameterSet</name>
    <message>
        <source>%1: its value cannot be read</source>
        <translation>%1: Der Wert kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>it cannot be read: %1</source>
        <translation>sie kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>it holds more parameters than a device has</source>
        <translation>sie enthält mehr Parameter, als ein Gerät hat</translation>
    </message>
    <message>
        <source>it is no file with parameters of a device</source>
        <translation>das ist keine Datei mit Parametern eines Geräts</translation>
    </message>
    <message>
        <source>it was written by a newer version of this program</source>
        <translation>sie wurde von einer neueren Version dieses Programms geschrieben</translation>
    </message>
</context>
<context>
    <name>QlumPartsPage</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Elements</source>
        <translation>Elemente</translation>
    </message>
    <message>
        <source>It is no value of the type that belongs there.</source>
        <translation>Das ist kein Wert des Typs, der dorthin gehört.</translation>
    </message>
    <message>
        <source>The value has changed meanwhile, and this part of it is gone.</source>
        <translation>Der Wert hat sich inzwischen geändert, und dieser Teil davon ist weg.</translation>
    </message>
</context>
<context>
    <name>QlumPasswordDlg</name>
    <message>
        <source>&amp;Password of the private key:</source>
        <translation>&amp;Kennwort des privaten Schlüssels:</translation>
    </message>
    <message>
        <source>&lt;b&gt;Password&lt;/b&gt;&lt;br&gt;The password with which the private key file is protected.</source>
        <translation>&lt;b&gt;Kennwort&lt;/b&gt;&lt;br&gt;Das Kennwort, mit dem die Datei des privaten Schlüssels geschützt ist.</translation>
    </message>
    <message>
        <source>Enter Password</source>
        <translation>Kennwort eingeben</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Kennwort</translation>
    </message>
</context>
<context>
    <name>QlumPasswordKeeper</name>
    <message>
        <source>&amp;Remember the password in the desktop&apos;s password store</source>
        <translation>Das Kennwort im Kennwortspeicher des Desktops &amp;merken</translation>
    </message>
    <message>
        <source>&amp;Remember the password until the program ends</source>
        <translation>Das Kennwort bis zum Programmende &amp;merken</translation>
    </message>
    <message>
        <source>&lt;b&gt;Remember the password&lt;/b&gt;&lt;br&gt;The password is asked for once. It is never written to a file of Tavelin.</source>
        <translation>&lt;b&gt;Kennwort merken&lt;/b&gt;&lt;br&gt;Nach dem Kennwort wird einmal gefragt. Es wird nie in eine Datei von Tavelin geschrieben.</translation>
    </message>
    <message>
        <source>A password may not have been forgotten.</source>
        <translation>Ein Kennwort wurde vielleicht nicht vergessen.</translation>
    </message>
    <message>
        <source>Asking the desktop&apos;s password store</source>
        <translation>Den Kennwortspeicher des Desktops fragen</translation>
    </message>
    <message>
        <source>Keeping a password in the desktop&apos;s password store</source>
        <translation>Ein Kennwort im Kennwortspeicher des Desktops ablegen</translation>
    </message>
    <message>
        <source>Passwords</source>
        <translation>Kennwörter</translation>
    </message>
    <message>
        <source>Tavelin: %1</source>
        <translation>Tavelin: %1</translation>
    </message>
    <message>
        <source>The desktop&apos;s password store cannot be reached, so it is forgotten when the program ends.</source>
        <translation>Der Kennwortspeicher des Desktops ist nicht erreichbar, daher wird es beim Programmende vergessen.</translation>
    </message>
    <message>
        <source>The desktop&apos;s password store cannot be reached.</source>
        <translation>Der Kennwortspeicher des Desktops ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>The desktop&apos;s password store has failed.</source>
        <translation>Der Kennwortspeicher des Desktops hat versagt.</translation>
    </message>
    <message>
        <source>The desktop&apos;s password store is locked.</source>
        <translation>Der Kennwortspeicher des Desktops ist gesperrt.</translation>
    </message>
    <message>
        <source>The desktop&apos;s password store keeps it for this server, endpoint and user, and forgets it when one of these changes or the server is removed.</source>
        <translation>Der Kennwortspeicher des Desktops bewahrt es für diesen Server, Endpunkt und Benutzer auf und vergisst es, wenn sich eines davon ändert oder der Server entfernt wird.</translation>
    </message>
    <message>
        <source>The password is kept until the program ends.</source>
        <translation>Das Kennwort bleibt bis zum Programmende gemerkt.</translation>
    </message>
    <message>
        <source>The password was not found.</source>
        <translation>Das Kennwort wurde nicht gefunden.</translation>
    </message>
</context>
<context>
    <name>QlumPasteReport</name>
    <message>
        <source>%1 of %2 cells were taken.</source>
        <translation>%1 von %2 Zellen wurden übernommen.</translation>
    </message>
    <message>
        <source>For %1 cells there is no place.</source>
        <translation>Für %1 Zellen ist kein Platz.</translation>
    </message>
    <message>
        <source>No values of the type are %1; what was there stays.</source>
        <translation>Keine Werte des Typs sind %1; was dort stand, bleibt.</translation>
    </message>
    <message>
        <source>There is no text to paste.</source>
        <translation>Es gibt keinen Text zum Einfügen.</translation>
    </message>
</context>
<context>
    <name>QlumPerformancePanel</name>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <source>&amp;Calls:</source>
        <translation>Auf&amp;rufe:</translation>
    </message>
    <message>
        <source>&amp;Measure:</source>
        <translation>&amp;Messen:</translation>
    </message>
    <message>
        <source>&amp;Nodes a call:</source>
        <translation>Kn&amp;oten je Aufruf:</translation>
    </message>
    <message>
        <source>&amp;Outstanding:</source>
        <translation>&amp;Gleichzeitig:</translation>
    </message>
    <message>
        <source>&amp;Pause:</source>
        <translation>&amp;Pause:</translation>
    </message>
    <message>
        <source>&amp;Time-out:</source>
        <translation>Zei&amp;tlimit:</translation>
    </message>
    <message>
        <source>A call has the first %1 of these %2 nodes.</source>
        <translation>Ein Aufruf hat die ersten %1 dieser %2 Knoten.</translation>
    </message>
    <message>
        <source>Between the end of a call and the next.</source>
        <translation>Zwischen dem Ende eines Aufrufs und dem nächsten.</translation>
    </message>
    <message>
        <source>Calls that are made before and do not count: caches, also those of the server, are filled then.</source>
        <translation>Aufrufe, die vorher gemacht werden und nicht zählen: Zwischenspeicher, auch die des Servers, füllen sich dann.</translation>
    </message>
    <message>
        <source>Calls that take longer count as failed.</source>
        <translation>Aufrufe, die länger dauern, gelten als fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Compare Security...</source>
        <translation>Sicherheit vergleichen...</translation>
    </message>
    <message>
        <source>D&amp;uration:</source>
        <translation>Da&amp;uer:</translation>
    </message>
    <message>
        <source>Drop methods of this server: there is none below.</source>
        <translation>Legen Sie Methoden dieses Servers ab: Unten ist keine.</translation>
    </message>
    <message>
        <source>Drop nodes here from the Address Space window.</source>
        <translation>Legen Sie hier Knoten aus dem Adressraumfenster ab.</translation>
    </message>
    <message>
        <source>Drop nodes of this server: there is none below.</source>
        <translation>Legen Sie Knoten dieses Servers ab: Unten ist keiner.</translation>
    </message>
    <message>
        <source>Drop variables of this server: there is none below.</source>
        <translation>Legen Sie Variablen dieses Servers ab: Unten ist keine.</translation>
    </message>
    <message>
        <source>Ends the run after the calls that are under way.</source>
        <translation>Beendet den Lauf nach den laufenden Aufrufen.</translation>
    </message>
    <message>
        <source>Give a number of calls or a duration: the run would never end.</source>
        <translation>Geben Sie eine Zahl von Aufrufen oder eine Dauer an: Der Lauf würde nie enden.</translation>
    </message>
    <message>
        <source>How often the service is called.</source>
        <translation>Wie oft der Dienst aufgerufen wird.</translation>
    </message>
    <message>
        <source>M&amp;easure</source>
        <translation>Messe&amp;n</translation>
    </message>
    <message>
        <source>Makes the calls once.</source>
        <translation>Macht die Aufrufe einmal.</translation>
    </message>
    <message>
        <source>Measurement</source>
        <translation>Messung</translation>
    </message>
    <message>
        <source>Measures the same over endpoints of the server, each in a session of its own.</source>
        <translation>Misst dasselbe über Endpunkte des Servers, jedes in einer eigenen Sitzung.</translation>
    </message>
    <message>
        <source>Measures with 1, 2, 5, 10 ... calls at once, and says from which number on more do not help.</source>
        <translation>Misst mit 1, 2, 5, 10 ... gleichzeitigen Aufrufen und sagt, ab welcher Zahl mehr nicht helfen.</translation>
    </message>
    <message>
        <source>Measures with 1, 2, 5, 10 ... nodes a call, up to the server&apos;s limit, and says from which number on more do not help.</source>
        <translation>Misst mit 1, 2, 5, 10 ... Knoten je Aufruf, bis zur Grenze des Servers, und sagt, ab welcher Zahl mehr nicht helfen.</translation>
    </message>
    <message>
        <source>Nodes to be measured</source>
        <translation>Zu messende Knoten</translation>
    </message>
    <message>
        <source>Progress of the run</source>
        <translation>Fortschritt des Laufs</translation>
    </message>
    <message>
        <source>Ser&amp;ver:</source>
        <translation>Ser&amp;ver:</translation>
    </message>
    <message>
        <source>So many calls are under way at once.</source>
        <translation>So viele Aufrufe laufen gleichzeitig.</translation>
    </message>
    <message>
        <source>Sweep Nodes a Call</source>
        <translation>Knoten je Aufruf variieren</translation>
    </message>
    <message>
        <source>Sweep Outstanding</source>
        <translation>Gleichzeitige variieren</translation>
    </message>
    <message>
        <source>The nodes below are taken in turn until a call has that many.</source>
        <translation>Die Knoten unten werden reihum genommen, bis ein Aufruf so viele hat.</translation>
    </message>
    <message>
        <source>The project has no server.</source>
        <translation>Das Projekt hat keinen Server.</translation>
    </message>
    <message>
        <source>The run ends after that time, at the latest.</source>
        <translation>Spätestens nach dieser Zeit endet der Lauf.</translation>
    </message>
    <message>
        <source>The service that is called again and again.</source>
        <translation>Der Dienst, der immer wieder aufgerufen wird.</translation>
    </message>
    <message>
        <source>W&amp;arm-up:</source>
        <translation>Auf&amp;wärmen:</translation>
    </message>
    <message>
        <source>Whose services are measured.</source>
        <translation>Wessen Dienste gemessen werden.</translation>
    </message>
    <message>
        <source>as many as fit</source>
        <translation>so viele wie möglich</translation>
    </message>
    <message>
        <source>no limit</source>
        <translation>keine Grenze</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
</context>
<context>
    <name>QlumPerformancePlugin</name>
    <message>
        <source>Measures how long a server takes to answer service calls.</source>
        <translation>Misst, wie lange ein Server für die Antwort auf Dienstaufrufe braucht.</translation>
    </message>
</context>
<context>
    <name>QlumPerformanceView</name>
    <message>
        <source>&quot;%1&quot; was not measured to its end.</source>
        <translation>„%1“ wurde nicht zu Ende gemessen.</translation>
    </message>
    <message>
        <source>&quot;Sweep Nodes a Call&quot; measures the same with ever larger calls.</source>
        <translation>„Knoten je Aufruf variieren“ misst dasselbe mit immer größeren Aufrufen.</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>%1 calls</source>
        <translation>%1 Aufrufe</translation>
    </message>
    <message>
        <source>%1 times</source>
        <translation>%1-mal</translation>
    </message>
    <message numerus="yes">
        <source>%n endpoint(s) could not be measured.</source>
        <translation>
            <numerusform>%n Endpunkt konnte nicht gemessen werden.</numerusform>
            <numerusform>%n Endpunkte konnten nicht gemessen werden.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n method(s) cannot be called and are left out; see the details.</source>
        <translation>
            <numerusform>%n Methode kann nicht aufgerufen werden und wird weggelassen; siehe Details.</numerusform>
            <numerusform>%n Methoden können nicht aufgerufen werden und werden weggelassen; siehe Details.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n node(s) cannot be written and are left out; see the details.</source>
        <translation>
            <numerusform>%n Knoten kann nicht geschrieben werden und wird weggelassen; siehe Details.</numerusform>
            <numerusform>%n Knoten können nicht geschrieben werden und werden weggelassen; siehe Details.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n node(s) of this view were left out.</source>
        <translation>
            <numerusform>%n Knoten dieser Ansicht wurde weggelassen.</numerusform>
            <numerusform>%n Knoten dieser Ansicht wurden weggelassen.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Call</source>
        <translation>A&amp;ufrufen</translation>
    </message>
    <message>
        <source>&amp;Measure</source>
        <translation>&amp;Messen</translation>
    </message>
    <message>
        <source>&amp;Remove Nodes</source>
        <translation>&amp;Knoten entfernen</translation>
    </message>
    <message>
        <source>&amp;Remove Runs</source>
        <translation>&amp;Läufe entfernen</translation>
    </message>
    <message>
        <source>&amp;Write</source>
        <translation>&amp;Schreiben</translation>
    </message>
    <message>
        <source>&lt;b&gt;Remove Nodes&lt;/b&gt;&lt;br&gt;Takes the selected nodes out of this view. Nothing changes on the server.</source>
        <translation>&lt;b&gt;Knoten entfernen&lt;/b&gt;&lt;br&gt;Nimmt die gewählten Knoten aus dieser Ansicht. Auf dem Server ändert sich nichts.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Remove Runs&lt;/b&gt;&lt;br&gt;Takes the selected runs out of the table.</source>
        <translation>&lt;b&gt;Läufe entfernen&lt;/b&gt;&lt;br&gt;Nimmt die gewählten Läufe aus der Tabelle.</translation>
    </message>
    <message>
        <source>A project keeps the figures of a run, not its samples.</source>
        <translation>Ein Projekt behält die Zahlen eines Laufs, nicht seine Einzelwerte.</translation>
    </message>
    <message>
        <source>Call Methods</source>
        <translation>Methoden aufrufen</translation>
    </message>
    <message>
        <source>Compare &amp;with:</source>
        <translation>Verglei&amp;chen mit:</translation>
    </message>
    <message>
        <source>Compare Security</source>
        <translation>Sicherheit vergleichen</translation>
    </message>
    <message>
        <source>Course</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Durations over time</source>
        <translation>Dauern über der Zeit</translation>
    </message>
    <message>
        <source>Each write puts back the value that was just read. A value that the server or somebody else changes meanwhile is set back to that.</source>
        <translation>Jedes Schreiben setzt den eben gelesenen Wert zurück. Ein Wert, den der Server oder jemand anderes inzwischen ändert, wird darauf zurückgesetzt.</translation>
    </message>
    <message>
        <source>Endpoints</source>
        <translation>Endpunkte</translation>
    </message>
    <message>
        <source>Figures</source>
        <translation>Zahlen</translation>
    </message>
    <message>
        <source>Histogram</source>
        <translation>Histogramm</translation>
    </message>
    <message>
        <source>How the durations are spread</source>
        <translation>Wie sich die Dauern verteilen</translation>
    </message>
    <message>
        <source>Left out: %1</source>
        <translation>Weggelassen: %1</translation>
    </message>
    <message>
        <source>Measure, and select the run in the table below.</source>
        <translation>Messen Sie, und wählen Sie den Lauf in der Tabelle unten.</translation>
    </message>
    <message>
        <source>No call of this run has succeeded.</source>
        <translation>Kein Aufruf dieses Laufs war erfolgreich.</translation>
    </message>
    <message>
        <source>No samples</source>
        <translation>Keine Einzelwerte</translation>
    </message>
    <message>
        <source>No sweep</source>
        <translation>Keine Variation</translation>
    </message>
    <message>
        <source>None of the methods can be called.</source>
        <translation>Keine der Methoden kann aufgerufen werden.</translation>
    </message>
    <message>
        <source>None of the nodes can be written.</source>
        <translation>Keiner der Knoten kann geschrieben werden.</translation>
    </message>
    <message>
        <source>Performance View</source>
        <translation>Leistungsmessung</translation>
    </message>
    <message>
        <source>Runs</source>
        <translation>Läufe</translation>
    </message>
    <message>
        <source>Sweep</source>
        <translation>Variation</translation>
    </message>
    <message>
        <source>The run calls %1 of %2 %3, warm-up included, with the arguments given.</source>
        <translation>Der Lauf ruft %1 von %2 %3 auf, Aufwärmen eingeschlossen, mit den angegebenen Argumenten.</translation>
    </message>
    <message>
        <source>The run calls %1 of %2 %3, warm-up included, without arguments.</source>
        <translation>Der Lauf ruft %1 von %2 %3 auf, Aufwärmen eingeschlossen, ohne Argumente.</translation>
    </message>
    <message numerus="yes">
        <source>The run writes to %n variable(s) of %1, %2.</source>
        <translation>
            <numerusform>Der Lauf schreibt auf %n Variable von %1, %2.</numerusform>
            <numerusform>Der Lauf schreibt auf %n Variablen von %1, %2.</numerusform>
        </translation>
    </message>
    <message>
        <source>The same run is made over each of these, in a session of its own. You may be asked about a certificate or a password; what is not at hand is left out and listed.</source>
        <translation>Derselbe Lauf wird über jeden davon gemacht, in einer eigenen Sitzung. Sie werden vielleicht nach einem Zertifikat oder Kennwort gefragt; was nicht zur Hand ist, wird weggelassen und aufgelistet.</translation>
    </message>
    <message>
        <source>The selected run</source>
        <translation>Der gewählte Lauf</translation>
    </message>
    <message>
        <source>The server&apos;s endpoints are not known.</source>
        <translation>Die Endpunkte des Servers sind nicht bekannt.</translation>
    </message>
    <message>
        <source>Their server is not in the project, or their node id cannot be read.</source>
        <translation>Ihr Server ist nicht im Projekt, oder ihre NodeId kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Values a second for each step of the sweep</source>
        <translation>Werte pro Sekunde für jeden Schritt der Variation</translation>
    </message>
    <message>
        <source>What the method does is done as often.</source>
        <translation>Was die Methode tut, geschieht ebenso oft.</translation>
    </message>
    <message>
        <source>What you measure is listed here, and kept in the project.</source>
        <translation>Was Sie messen, wird hier aufgelistet und im Projekt behalten.</translation>
    </message>
    <message>
        <source>Write Values Back</source>
        <translation>Werte zurückschreiben</translation>
    </message>
    <message>
        <source>Written: %1</source>
        <translation>Geschrieben: %1</translation>
    </message>
    <message>
        <source>calls by duration</source>
        <translation>Aufrufe nach Dauer</translation>
    </message>
    <message numerus="yes">
        <source>for %n second(s)</source>
        <translation>
            <numerusform>%n Sekunde lang</numerusform>
            <numerusform>%n Sekunden lang</numerusform>
        </translation>
    </message>
    <message>
        <source>measuring...</source>
        <translation>wird gemessen...</translation>
    </message>
    <message>
        <source>nothing</source>
        <translation>nichts</translation>
    </message>
    <message>
        <source>values/s by calls outstanding</source>
        <translation>Werte/s nach gleichzeitigen Aufrufen</translation>
    </message>
    <message>
        <source>values/s by nodes a call</source>
        <translation>Werte/s nach Knoten je Aufruf</translation>
    </message>
</context>
<context>
    <name>QlumPerformanceWork</name>
    <message>
        <source>Asking for the server&apos;s endpoints</source>
        <translation>Nach den Endpunkten des Servers fragen</translation>
    </message>
    <message>
        <source>Closing a session</source>
        <translation>Eine Sitzung schließen</translation>
    </message>
    <message>
        <source>Measuring</source>
        <translation>Messen</translation>
    </message>
    <message>
        <source>Reading names of nodes</source>
        <translation>Namen von Knoten lesen</translation>
    </message>
    <message>
        <source>Reading the arguments of methods</source>
        <translation>Die Argumente von Methoden lesen</translation>
    </message>
    <message>
        <source>Reading what would be written</source>
        <translation>Lesen, was geschrieben würde</translation>
    </message>
    <message>
        <source>The server is not connected.</source>
        <translation>Der Server ist nicht verbunden.</translation>
    </message>
    <message>
        <source>it may not be called by this user</source>
        <translation>sie darf von diesem Benutzer nicht aufgerufen werden</translation>
    </message>
    <message>
        <source>it may not be written by this user</source>
        <translation>er darf von diesem Benutzer nicht geschrieben werden</translation>
    </message>
    <message>
        <source>run %1 of %2</source>
        <translation>Lauf %1 von %2</translation>
    </message>
</context>
<context>
    <name>QlumPlot</name>
    <message>
        <source>%1 was not written: %2. Choose another folder, or make room.</source>
        <translation>%1 wurde nicht geschrieben: %2. Wählen Sie einen anderen Ordner, oder schaffen Sie Platz.</translation>
    </message>
    <message>
        <source>%1 was not written: a plot can be a .png, .svg or .csv file.</source>
        <translation>%1 wurde nicht geschrieben: Ein Plot kann eine .png-, .svg- oder .csv-Datei sein.</translation>
    </message>
    <message>
        <source>&amp;Back</source>
        <translation>&amp;Zurück</translation>
    </message>
    <message>
        <source>&amp;Cursors</source>
        <translation>&amp;Cursor</translation>
    </message>
    <message>
        <source>&amp;Earlier</source>
        <translation>&amp;Früher</translation>
    </message>
    <message>
        <source>&amp;Forward</source>
        <translation>&amp;Vorwärts</translation>
    </message>
    <message>
        <source>&amp;Later</source>
        <translation>&amp;Später</translation>
    </message>
    <message>
        <source>&lt;b&gt;Back&lt;/b&gt;&lt;br&gt;Shows what was shown before the last zoom or move.</source>
        <translation>&lt;b&gt;Zurück&lt;/b&gt;&lt;br&gt;Zeigt, was vor dem letzten Zoomen oder Verschieben zu sehen war.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy Picture&lt;/b&gt;&lt;br&gt;Puts the plot as a picture into the clipboard.</source>
        <translation>&lt;b&gt;Bild kopieren&lt;/b&gt;&lt;br&gt;Legt den Plot als Bild in die Zwischenablage.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Cursors&lt;/b&gt;&lt;br&gt;Two lines to drag, or to move with Ctrl and the arrow keys (with Shift the second one), and a table of the values there with their differences.</source>
        <translation>&lt;b&gt;Cursor&lt;/b&gt;&lt;br&gt;Zwei Linien zum Ziehen, oder zum Verschieben mit Strg und den Pfeiltasten (mit Umschalt die zweite), und eine Tabelle der Werte dort mit ihren Unterschieden.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Earlier&lt;/b&gt;&lt;br&gt;Moves the view to earlier times. Dragging with Shift or the middle button moves it freely.</source>
        <translation>&lt;b&gt;Früher&lt;/b&gt;&lt;br&gt;Verschiebt die Ansicht zu früheren Zeiten. Ziehen mit Umschalt oder der mittleren Taste verschiebt frei.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Export&lt;/b&gt;&lt;br&gt;Writes a picture (PNG, SVG), or the figures (CSV).</source>
        <translation>&lt;b&gt;Exportieren&lt;/b&gt;&lt;br&gt;Schreibt ein Bild (PNG, SVG) oder die Zahlen (CSV).</translation>
    </message>
    <message>
        <source>&lt;b&gt;Export&lt;/b&gt;&lt;br&gt;Writes a picture (PNG, SVG), or the samples of the visible curves (CSV).</source>
        <translation>&lt;b&gt;Exportieren&lt;/b&gt;&lt;br&gt;Schreibt ein Bild (PNG, SVG) oder die Werte der sichtbaren Kurven (CSV).</translation>
    </message>
    <message>
        <source>&lt;b&gt;Follow Newest&lt;/b&gt;&lt;br&gt;Keeps the newest samples in sight, until you look at another part.</source>
        <translation>&lt;b&gt;Neuesten folgen&lt;/b&gt;&lt;br&gt;Hält die neuesten Werte im Blick, bis Sie einen anderen Teil ansehen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Forward&lt;/b&gt;&lt;br&gt;Takes the last Back back.</source>
        <translation>&lt;b&gt;Vorwärts&lt;/b&gt;&lt;br&gt;Nimmt das letzte Zurück zurück.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Later&lt;/b&gt;&lt;br&gt;Moves the view to later times.</source>
        <translation>&lt;b&gt;Später&lt;/b&gt;&lt;br&gt;Verschiebt die Ansicht zu späteren Zeiten.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Show All&lt;/b&gt;&lt;br&gt;Shows all samples of the visible curves. A double click does the same.</source>
        <translation>&lt;b&gt;Alle zeigen&lt;/b&gt;&lt;br&gt;Zeigt alle Werte der sichtbaren Kurven. Ein Doppelklick tut dasselbe.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Times in UTC&lt;/b&gt;&lt;br&gt;Shows UTC instead of local time.</source>
        <translation>&lt;b&gt;Zeiten in UTC&lt;/b&gt;&lt;br&gt;Zeigt UTC statt Ortszeit.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Usual Ranges&lt;/b&gt;&lt;br&gt;Value axes show the ranges that servers give for their values, and not only what is there.</source>
        <translation>&lt;b&gt;Übliche Bereiche&lt;/b&gt;&lt;br&gt;Wertachsen zeigen die Bereiche, die Server für ihre Werte angeben, und nicht nur, was da ist.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Zoom In&lt;/b&gt;&lt;br&gt;Shows half of the time. Dragging a rectangle zooms to it; the wheel zooms around the pointer.</source>
        <translation>&lt;b&gt;Vergrößern&lt;/b&gt;&lt;br&gt;Zeigt die halbe Zeit. Ein gezogenes Rechteck wird vergrößert; das Mausrad zoomt um den Zeiger.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Zoom Out&lt;/b&gt;&lt;br&gt;Shows twice the time.</source>
        <translation>&lt;b&gt;Verkleinern&lt;/b&gt;&lt;br&gt;Zeigt die doppelte Zeit.</translation>
    </message>
    <message>
        <source>A</source>
        <translation>A</translation>
    </message>
    <message>
        <source>B</source>
        <translation>B</translation>
    </message>
    <message>
        <source>B − A</source>
        <translation>B − A</translation>
    </message>
    <message>
        <source>Back to the View Before</source>
        <translation>Zurück zur vorigen Ansicht</translation>
    </message>
    <message>
        <source>Cop&amp;y Picture</source>
        <translation>Bild ko&amp;pieren</translation>
    </message>
    <message>
        <source>Copy Picture</source>
        <translation>Bild kopieren</translation>
    </message>
    <message>
        <source>Cursor A Left</source>
        <translation>Cursor A nach links</translation>
    </message>
    <message>
        <source>Cursor A Right</source>
        <translation>Cursor A nach rechts</translation>
    </message>
    <message>
        <source>Cursor B Left</source>
        <translation>Cursor B nach links</translation>
    </message>
    <message>
        <source>Cursor B Right</source>
        <translation>Cursor B nach rechts</translation>
    </message>
    <message>
        <source>Curve</source>
        <translation>Kurve</translation>
    </message>
    <message>
        <source>Curves appear here as soon as values arrive.</source>
        <translation>Kurven erscheinen hier, sobald Werte ankommen.</translation>
    </message>
    <message>
        <source>E&amp;xport...</source>
        <translation>E&amp;xportieren...</translation>
    </message>
    <message>
        <source>Export Picture or Figures</source>
        <translation>Bild oder Zahlen exportieren</translation>
    </message>
    <message>
        <source>Export Picture or Samples</source>
        <translation>Bild oder Werte exportieren</translation>
    </message>
    <message>
        <source>Export Plot</source>
        <translation>Plot exportieren</translation>
    </message>
    <message>
        <source>Exporting samples to %1</source>
        <translation>Werte nach %1 exportieren</translation>
    </message>
    <message>
        <source>Follow &amp;Newest</source>
        <translation>&amp;Neuesten folgen</translation>
    </message>
    <message>
        <source>Forward Again</source>
        <translation>Wieder vorwärts</translation>
    </message>
    <message>
        <source>Keep the Newest Samples in Sight</source>
        <translation>Die neuesten Werte im Blick behalten</translation>
    </message>
    <message>
        <source>Legend; a click hides or shows a curve</source>
        <translation>Legende; ein Klick verbirgt oder zeigt eine Kurve</translation>
    </message>
    <message>
        <source>Measure with Two Cursors</source>
        <translation>Mit zwei Cursorn messen</translation>
    </message>
    <message>
        <source>Moves cursor A to the left.</source>
        <translation>Verschiebt Cursor A nach links.</translation>
    </message>
    <message>
        <source>Moves cursor A to the right.</source>
        <translation>Verschiebt Cursor A nach rechts.</translation>
    </message>
    <message>
        <source>Moves cursor B to the left.</source>
        <translation>Verschiebt Cursor B nach links.</translation>
    </message>
    <message>
        <source>Moves cursor B to the right.</source>
        <translation>Verschiebt Cursor B nach rechts.</translation>
    </message>
    <message>
        <source>No samples yet</source>
        <translation>Noch keine Werte</translation>
    </message>
    <message>
        <source>Picture (*.png);;Drawing (*.svg);;%1 (*.csv)</source>
        <translation>Bild (*.png);;Zeichnung (*.svg);;%1 (*.csv)</translation>
    </message>
    <message>
        <source>Plot</source>
        <translation>Plot</translation>
    </message>
    <message>
        <source>Samples as text</source>
        <translation>Werte als Text</translation>
    </message>
    <message>
        <source>Show &amp;All</source>
        <translation>&amp;Alle zeigen</translation>
    </message>
    <message>
        <source>Show All Samples</source>
        <translation>Alle Werte zeigen</translation>
    </message>
    <message>
        <source>Show Earlier Samples</source>
        <translation>Frühere Werte zeigen</translation>
    </message>
    <message>
        <source>Show Later Samples</source>
        <translation>Spätere Werte zeigen</translation>
    </message>
    <message>
        <source>Show Times in UTC</source>
        <translation>Zeiten in UTC zeigen</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Times in &amp;UTC</source>
        <translation>Zeiten in &amp;UTC</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Usual &amp;Ranges</source>
        <translation>Übliche Be&amp;reiche</translation>
    </message>
    <message>
        <source>Value Axes over the Usual Ranges</source>
        <translation>Wertachsen über die üblichen Bereiche</translation>
    </message>
    <message>
        <source>Value axes</source>
        <translation>Wertachsen</translation>
    </message>
    <message>
        <source>Values at the cursors</source>
        <translation>Werte an den Cursorn</translation>
    </message>
    <message>
        <source>Zoom &amp;In</source>
        <translation>Ver&amp;größern</translation>
    </message>
    <message>
        <source>Zoom &amp;Out</source>
        <translation>Ver&amp;kleinern</translation>
    </message>
</context>
<context>
    <name>QlumPlotArea</name>
    <message>
        <source>Curves</source>
        <translation>Kurven</translation>
    </message>
    <message>
        <source>UTC</source>
        <translation>UTC</translation>
    </message>
</context>
<context>
    <name>QlumPluginDialog</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>&lt;b&gt;Plugin Information&lt;/b&gt;&lt;br&gt;Shows all loaded plugins and the interfaces they implement.</source>
        <translation>&lt;b&gt;Plugin-Informationen&lt;/b&gt;&lt;br&gt;Zeigt alle geladenen Plugins und die Schnittstellen, die sie umsetzen.</translation>
    </message>
    <message>
        <source>No plugins were found.</source>
        <translation>Es wurden keine Plugins gefunden.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Plugin Information</source>
        <translation>Plugin-Informationen</translation>
    </message>
    <message>
        <source>Plugins</source>
        <translation>Plugins</translation>
    </message>
    <message>
        <source>Static Plugin</source>
        <translation>Statisches Plugin</translation>
    </message>
    <message>
        <source>Tavelin found the following plugins
(Plugin Dir: %1)</source>
        <translation>Tavelin hat die folgenden Plugins gefunden
(Plugin-Ordner: %1)</translation>
    </message>
    <message>
        <source>plugins</source>
        <translation>Plugins</translation>
    </message>
</context>
<context>
    <name>QlumPluginLoader</name>
    <message>
        <source>%1 (Static Plugin)</source>
        <translation>%1 (statisches Plugin)</translation>
    </message>
    <message>
        <source>Could not load %1: %2</source>
        <translation>%1 konnte nicht geladen werden: %2</translation>
    </message>
    <message>
        <source>Could not load %1: QlumPluginInterface is not supported by the plugin</source>
        <translation>%1 konnte nicht geladen werden: Das Plugin unterstützt QlumPluginInterface nicht</translation>
    </message>
    <message>
        <source>Loaded %1.</source>
        <translation>%1 geladen.</translation>
    </message>
</context>
<context>
    <name>QlumPlugins</name>
    <message>
        <source>Data Access Plugin</source>
        <translation>Plugin Datenzugriff</translation>
    </message>
    <message>
        <source>Data Logger Plugin</source>
        <translation>Plugin Datenlogger</translation>
    </message>
    <message>
        <source>GDS Plugin</source>
        <translation>Plugin GDS</translation>
    </message>
    <message>
        <source>Image Viewer Plugin</source>
        <translation>Plugin Bildbetrachter</translation>
    </message>
    <message>
        <source>Server Diagnostic Plugin</source>
        <translation>Plugin Serverdiagnose</translation>
    </message>
    <message>
        <source>UA Attribute Plugin</source>
        <translation>Plugin Attribute</translation>
    </message>
    <message>
        <source>UA Devices Plugin</source>
        <translation>Plugin Geräte</translation>
    </message>
    <message>
        <source>UA Events Plugin</source>
        <translation>Plugin Ereignisse</translation>
    </message>
    <message>
        <source>UA History Plugin</source>
        <translation>Plugin Historie</translation>
    </message>
    <message>
        <source>UA Method Plugin</source>
        <translation>Plugin Methoden</translation>
    </message>
    <message>
        <source>UA Performance Plugin</source>
        <translation>Plugin Leistung</translation>
    </message>
    <message>
        <source>UA Reference Plugin</source>
        <translation>Plugin Referenzen</translation>
    </message>
</context>
<context>
    <name>QlumProjectFile</name>
    <message>
        <source>It is no project file.</source>
        <translation>Das ist keine Projektdatei.</translation>
    </message>
    <message>
        <source>Project</source>
        <translation>Projekt</translation>
    </message>
    <message>
        <source>The project %1 could not be read: %2</source>
        <translation>Das Projekt %1 konnte nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>The project file holds %1 %2; only the first %3 were read.</source>
        <translation>Die Projektdatei enthält %1 %2; nur die ersten %3 wurden gelesen.</translation>
    </message>
    <message>
        <source>The server &apos;%1&apos; of the project could not be read.</source>
        <translation>Der Server „%1“ des Projekts konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Writing %1 failed: %2.</source>
        <translation>Schreiben von %1 fehlgeschlagen: %2.</translation>
    </message>
    <message>
        <source>documents</source>
        <translation>Dokumente</translation>
    </message>
    <message>
        <source>servers</source>
        <translation>Server</translation>
    </message>
</context>
<context>
    <name>QlumProjectModel</name>
    <message>
        <source>Documents</source>
        <translation>Dokumente</translation>
    </message>
    <message>
        <source>Item</source>
        <translation>Element</translation>
    </message>
    <message>
        <source>Project</source>
        <translation>Projekt</translation>
    </message>
    <message>
        <source>Servers</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Set to %1</source>
        <translation>Gesetzt auf %1</translation>
    </message>
</context>
<context>
    <name>QlumProjectNodeDocument</name>
    <message>
        <source>A document needs a name.</source>
        <translation>Ein Dokument braucht einen Namen.</translation>
    </message>
    <message>
        <source>A document with the name &apos;%1&apos; already exists.</source>
        <translation>Ein Dokument mit dem Namen „%1“ existiert bereits.</translation>
    </message>
    <message>
        <source>Error while renaming a document</source>
        <translation>Fehler beim Umbenennen eines Dokuments</translation>
    </message>
    <message>
        <source>The name of a document can have at most %1 characters.</source>
        <translation>Der Name eines Dokuments kann höchstens %1 Zeichen haben.</translation>
    </message>
    <message>
        <source>The name of a document cannot contain &apos;/&apos; or &apos;\&apos;.</source>
        <translation>Der Name eines Dokuments kann weder „/“ noch „\“ enthalten.</translation>
    </message>
</context>
<context>
    <name>QlumProjectNodeServer</name>
    <message>
        <source>%1 again at %2.</source>
        <translation>%1 wieder um %2.</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Connection status of server &apos;%1&apos; changed to &apos;%2&apos;.</source>
        <translation>Verbindungsstatus des Servers „%1“ wechselte zu „%2“.</translation>
    </message>
    <message>
        <source>Data types of server &apos;%1&apos; loaded</source>
        <translation>Datentypen des Servers „%1“ geladen</translation>
    </message>
    <message>
        <source>Dialled at %1, which is not the host that the server names.</source>
        <translation>Angewählt unter %1; das ist nicht der Host, den der Server nennt.</translation>
    </message>
    <message>
        <source>Dialled at %1. The server names the host &apos;%2&apos;, which cannot be found from here.</source>
        <translation>Angewählt unter %1. Der Server nennt den Host „%2“, der von hier aus nicht zu finden ist.</translation>
    </message>
    <message>
        <source>Disconnect succeeded.</source>
        <translation>Trennen war erfolgreich.</translation>
    </message>
    <message>
        <source>Disconnecting failed with error &apos;%1&apos;</source>
        <translation>Trennen ist mit dem Fehler „%1“ fehlgeschlagen</translation>
    </message>
    <message>
        <source>Error &apos;%1&apos; was returned during %2</source>
        <translation>Bei %2 wurde der Fehler „%1“ gemeldet</translation>
    </message>
    <message>
        <source>Loading the data types of server &apos;%1&apos; failed with error &apos;%2&apos;</source>
        <translation>Laden der Datentypen des Servers „%1“ ist mit dem Fehler „%2“ fehlgeschlagen</translation>
    </message>
    <message>
        <source>Namespace table changed, mapping old to new namespace indices</source>
        <translation>Namensraumtabelle geändert, alte Namensraumindizes werden auf neue abgebildet</translation>
    </message>
    <message>
        <source>Reconnecting to server &apos;%1&apos; now</source>
        <translation>Server „%1“ wird jetzt wieder verbunden</translation>
    </message>
    <message>
        <source>Server &apos;%1&apos; is set to %2 now.</source>
        <translation>Server „%1“ ist jetzt auf %2 gesetzt.</translation>
    </message>
    <message>
        <source>Server &apos;%1&apos; presents another certificate than before. Reconnecting waits for the user.</source>
        <translation>Server „%1“ legt ein anderes Zertifikat vor als bisher. Das Wiederverbinden wartet auf den Benutzer.</translation>
    </message>
    <message>
        <source>Server Node</source>
        <translation>Serverknoten</translation>
    </message>
    <message>
        <source>The connection is lost.</source>
        <translation>Die Verbindung ist verloren.</translation>
    </message>
    <message>
        <source>The network has changed.</source>
        <translation>Das Netz hat sich geändert.</translation>
    </message>
    <message>
        <source>The server presents another certificate than before.</source>
        <translation>Der Server legt ein anderes Zertifikat vor als bisher.</translation>
    </message>
</context>
<context>
    <name>QlumProjectRecovery</name>
    <message>
        <source>The unsaved changes could not be kept in %1: after a crash they would be lost.</source>
        <translation>Die ungespeicherten Änderungen konnten nicht in %1 bewahrt werden: Nach einem Absturz wären sie verloren.</translation>
    </message>
</context>
<context>
    <name>QlumProjectSession</name>
    <message>
        <source>%1 - %2[*]</source>
        <translation>%1 - %2[*]</translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 existiert bereits.
Möchten Sie die Datei ersetzen?</translation>
    </message>
    <message>
        <source>Could not save the project.
Please check if you have sufficient rights to write to the file.</source>
        <translation>Das Projekt konnte nicht gespeichert werden.
Bitte prüfen Sie, ob Sie das Recht haben, in die Datei zu schreiben.</translation>
    </message>
    <message>
        <source>Do you want to save the current project?</source>
        <translation>Möchten Sie das aktuelle Projekt speichern?</translation>
    </message>
    <message>
        <source>Invalid command line argument, project could not be loaded!</source>
        <translation>Ungültiges Argument auf der Befehlszeile, das Projekt konnte nicht geladen werden!</translation>
    </message>
    <message>
        <source>Korvanda Tavelin - The OPC Unified Architecture Client</source>
        <translation>Korvanda Tavelin - Der Client für OPC Unified Architecture</translation>
    </message>
    <message>
        <source>Not all of the project %1 could be read. Saving it would replace the file by what was read: servers: %2, documents: %3.</source>
        <translation>Vom Projekt %1 konnte nicht alles gelesen werden. Speichern würde die Datei durch das Gelesene ersetzen: Server: %2, Dokumente: %3.</translation>
    </message>
    <message>
        <source>Open Project</source>
        <translation>Projekt öffnen</translation>
    </message>
    <message>
        <source>Save Project</source>
        <translation>Projekt speichern</translation>
    </message>
    <message>
        <source>The project %1 could not be read.
%2</source>
        <translation>Das Projekt %1 konnte nicht gelesen werden.
%2</translation>
    </message>
    <message>
        <source>The project %1 was saved by Tavelin %2, which is newer than this one. What only that version knows is not shown here, and may be lost when the project is saved under the same name.</source>
        <translation>Das Projekt %1 wurde von Tavelin %2 gespeichert, das neuer ist als dieses. Was nur jene Version kennt, wird hier nicht gezeigt und geht womöglich verloren, wenn das Projekt unter demselben Namen gespeichert wird.</translation>
    </message>
    <message>
        <source>Too many command line arguments, Tavelin project file expected!</source>
        <translation>Zu viele Argumente auf der Befehlszeile, erwartet wird eine Tavelin-Projektdatei!</translation>
    </message>
    <message>
        <source>UA Project File (*.uap)</source>
        <translation>UA-Projektdatei (*.uap)</translation>
    </message>
    <message>
        <source>Unsaved changes</source>
        <translation>Ungespeicherte Änderungen</translation>
    </message>
</context>
<context>
    <name>QlumProjectView</name>
    <message>
        <source>%1 for %2</source>
        <translation>%1 für %2</translation>
    </message>
    <message>
        <source>&amp;Add Document...</source>
        <translation>Dokument &amp;hinzufügen...</translation>
    </message>
    <message>
        <source>&amp;Disconnect Server</source>
        <translation>Server &amp;trennen</translation>
    </message>
    <message>
        <source>&amp;Find Node...</source>
        <translation>Knoten &amp;suchen...</translation>
    </message>
    <message>
        <source>15 Minutes</source>
        <translation>15 Minuten</translation>
    </message>
    <message>
        <source>8 Hours</source>
        <translation>8 Stunden</translation>
    </message>
    <message>
        <source>Add &amp;Server...</source>
        <translation>&amp;Server hinzufügen...</translation>
    </message>
    <message>
        <source>Change &amp;User...</source>
        <translation>&amp;Benutzer wechseln...</translation>
    </message>
    <message>
        <source>Dia&amp;gnose Connection...</source>
        <translation>Verbindung dia&amp;gnostizieren...</translation>
    </message>
    <message>
        <source>Project</source>
        <translation>Projekt</translation>
    </message>
    <message>
        <source>R&amp;ole</source>
        <translation>R&amp;olle</translation>
    </message>
    <message>
        <source>Re&amp;move Document</source>
        <translation>Dokument &amp;entfernen</translation>
    </message>
    <message>
        <source>Re&amp;move Server</source>
        <translation>Server &amp;entfernen</translation>
    </message>
    <message>
        <source>Re&amp;name</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <source>Server &amp;Properties...</source>
        <translation>Server&amp;eigenschaften...</translation>
    </message>
    <message>
        <source>Then it is what it was before</source>
        <translation>Danach ist sie wieder, was sie vorher war</translation>
    </message>
    <message>
        <source>an Hour</source>
        <translation>eine Stunde</translation>
    </message>
</context>
<context>
    <name>QlumPushAuthorityDialog</name>
    <message>
        <source> years</source>
        <translation> Jahre</translation>
    </message>
    <message>
        <source>&amp;Make</source>
        <translation>&amp;Erstellen</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>&amp;Organization:</source>
        <translation>&amp;Organisation:</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Kennwort:</translation>
    </message>
    <message>
        <source>&amp;Sign</source>
        <translation>&amp;Signieren</translation>
    </message>
    <message>
        <source>&amp;Valid for:</source>
        <translation>&amp;Gültig für:</translation>
    </message>
    <message>
        <source>New Certificate Authority</source>
        <translation>Neue Zertifizierungsstelle</translation>
    </message>
    <message>
        <source>Password &amp;again:</source>
        <translation>Kenn&amp;wort wiederholen:</translation>
    </message>
    <message>
        <source>Password of the Authority</source>
        <translation>Kennwort der Zertifizierungsstelle</translation>
    </message>
    <message>
        <source>Tavelin Authority</source>
        <translation>Tavelin Authority</translation>
    </message>
    <message>
        <source>The authority signs certificates of servers. Its key stays on this computer, protected by the password, which nobody can find out again. Whoever shall trust its certificates needs its certificate and its revocation list.</source>
        <translation>Die Zertifizierungsstelle signiert Zertifikate von Servern. Ihr Schlüssel bleibt auf diesem Rechner, geschützt durch das Kennwort, das niemand wieder herausfinden kann. Wer ihren Zertifikaten vertrauen soll, braucht ihr Zertifikat und ihre Sperrliste.</translation>
    </message>
    <message>
        <source>The key of the authority of this computer is protected by a password.</source>
        <translation>Der Schlüssel der Zertifizierungsstelle dieses Rechners ist durch ein Kennwort geschützt.</translation>
    </message>
</context>
<context>
    <name>QlumPushCertificatePage</name>
    <message>
        <source> days</source>
        <translation> Tage</translation>
    </message>
    <message>
        <source>%1, valid until %2</source>
        <translation>%1, gültig bis %2</translation>
    </message>
    <message>
        <source>&amp;Export Authority...</source>
        <translation>Zertifizierungsstelle e&amp;xportieren...</translation>
    </message>
    <message>
        <source>&amp;Import Answer...</source>
        <translation>Antwort &amp;importieren...</translation>
    </message>
    <message>
        <source>&amp;Make Certificate...</source>
        <translation>Zertifikat erste&amp;llen...</translation>
    </message>
    <message>
        <source>&lt;b&gt;Certificate Group&lt;/b&gt;&lt;br&gt;For which of the server&apos;s purposes the certificate is.</source>
        <translation>&lt;b&gt;Zertifikatsgruppe&lt;/b&gt;&lt;br&gt;Für welchen Zweck des Servers das Zertifikat ist.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Certificate Type&lt;/b&gt;&lt;br&gt;Which algorithms the certificate is for.</source>
        <translation>&lt;b&gt;Zertifikatstyp&lt;/b&gt;&lt;br&gt;Für welche Algorithmen das Zertifikat ist.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Key Made Here&lt;/b&gt;&lt;br&gt;For servers that cannot make keys. It is sent over an encrypted connection only, and wiped here afterwards.</source>
        <translation>&lt;b&gt;Hier erzeugter Schlüssel&lt;/b&gt;&lt;br&gt;Für Server, die keine Schlüssel erzeugen können. Er wird nur über eine verschlüsselte Verbindung gesendet und hier danach gelöscht.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Subject&lt;/b&gt;&lt;br&gt;The name in the new certificate, as CN=...,O=.... Empty: the server keeps the name that it has.</source>
        <translation>&lt;b&gt;Inhaber&lt;/b&gt;&lt;br&gt;Der Name im neuen Zertifikat, als CN=...,O=.... Leer: Der Server behält seinen Namen.</translation>
    </message>
    <message>
        <source>A&amp;pply Changes...</source>
        <translation>Änderungen &amp;anwenden...</translation>
    </message>
    <message>
        <source>Certificate &amp;group:</source>
        <translation>Zertifikats&amp;gruppe:</translation>
    </message>
    <message>
        <source>Certificate &amp;type:</source>
        <translation>Zertifikats&amp;typ:</translation>
    </message>
    <message>
        <source>Changes on the server</source>
        <translation>Änderungen auf dem Server</translation>
    </message>
    <message>
        <source>Dis&amp;card Changes</source>
        <translation>Änderungen verwer&amp;fen</translation>
    </message>
    <message>
        <source>Format of the key</source>
        <translation>Format des Schlüssels</translation>
    </message>
    <message>
        <source>Have the server forget what was sent and not applied</source>
        <translation>Den Server vergessen lassen, was gesendet und nicht angewendet wurde</translation>
    </message>
    <message>
        <source>Have the server go back to the certificates and trust lists that it came with</source>
        <translation>Den Server zu den Zertifikaten und Vertrauenslisten zurückkehren lassen, mit denen er kam</translation>
    </message>
    <message>
        <source>Have the server make a request, for somebody else to sign</source>
        <translation>Den Server einen Antrag erstellen lassen, den jemand anderes signiert</translation>
    </message>
    <message>
        <source>Have the server use what was sent; it may close all connections</source>
        <translation>Den Server verwenden lassen, was gesendet wurde; er schließt vielleicht alle Verbindungen</translation>
    </message>
    <message>
        <source>In use now:</source>
        <translation>Derzeit verwendet:</translation>
    </message>
    <message>
        <source>Make a small certificate authority on this computer</source>
        <translation>Auf diesem Rechner eine kleine Zertifizierungsstelle anlegen</translation>
    </message>
    <message>
        <source>New &amp;Authority...</source>
        <translation>Ne&amp;ue Zertifizierungsstelle...</translation>
    </message>
    <message>
        <source>Not applied yet: %1</source>
        <translation>Noch nicht angewendet: %1</translation>
    </message>
    <message>
        <source>Nothing waits to be applied.</source>
        <translation>Nichts wartet darauf, angewendet zu werden.</translation>
    </message>
    <message>
        <source>Or somebody else, who gets a file and sends one back:</source>
        <translation>Oder jemand anderes, der eine Datei bekommt und eine zurücksendet:</translation>
    </message>
    <message>
        <source>Private key</source>
        <translation>Privater Schlüssel</translation>
    </message>
    <message>
        <source>Save &amp;Request...</source>
        <translation>Antrag s&amp;peichern...</translation>
    </message>
    <message>
        <source>Send the certificate that was made of the request to the server</source>
        <translation>Das auf den Antrag hin erstellte Zertifikat an den Server senden</translation>
    </message>
    <message>
        <source>Server De&amp;faults...</source>
        <translation>Server&amp;vorgaben...</translation>
    </message>
    <message>
        <source>Sho&amp;w...</source>
        <translation>&amp;Zeigen...</translation>
    </message>
    <message>
        <source>Show the certificate that the server uses now</source>
        <translation>Das Zertifikat zeigen, das der Server jetzt verwendet</translation>
    </message>
    <message>
        <source>Sign a new certificate with the authority of this computer and send it to the server</source>
        <translation>Ein neues Zertifikat mit der Zertifizierungsstelle dieses Rechners signieren und an den Server senden</translation>
    </message>
    <message>
        <source>Signed by</source>
        <translation>Signiert durch</translation>
    </message>
    <message>
        <source>Su&amp;bject:</source>
        <translation>Inhabe&amp;r:</translation>
    </message>
    <message>
        <source>The key is made here and sent, as</source>
        <translation>Der Schlüssel wird hier erzeugt und gesendet, als</translation>
    </message>
    <message>
        <source>The server &amp;keeps its key</source>
        <translation>Der Server &amp;behält seinen Schlüssel</translation>
    </message>
    <message>
        <source>The server makes a &amp;new key</source>
        <translation>Der Server erzeugt einen &amp;neuen Schlüssel</translation>
    </message>
    <message>
        <source>There is no authority on this computer yet</source>
        <translation>Auf diesem Rechner gibt es noch keine Zertifizierungsstelle</translation>
    </message>
    <message>
        <source>Valid for</source>
        <translation>Gültig für</translation>
    </message>
    <message>
        <source>Valid for:</source>
        <translation>Gültig für:</translation>
    </message>
    <message>
        <source>Write the authority&apos;s certificate and revocation list to files</source>
        <translation>Zertifikat und Sperrliste der Zertifizierungsstelle in Dateien schreiben</translation>
    </message>
    <message>
        <source>as it is now</source>
        <translation>wie es jetzt ist</translation>
    </message>
    <message>
        <source>not known: the connection is not secured</source>
        <translation>nicht bekannt: Die Verbindung ist nicht gesichert</translation>
    </message>
</context>
<context>
    <name>QlumPushClient</name>
    <message>
        <source>%1 bytes</source>
        <translation>%1 Bytes</translation>
    </message>
    <message>
        <source>the server has closed the connection, as expected</source>
        <translation>der Server hat die Verbindung wie erwartet geschlossen</translation>
    </message>
</context>
<context>
    <name>QlumPushGroupModel</name>
    <message>
        <source>Certificate group</source>
        <translation>Zertifikatsgruppe</translation>
    </message>
    <message>
        <source>Certificate types</source>
        <translation>Zertifikatstypen</translation>
    </message>
    <message>
        <source>Methods of the trust list</source>
        <translation>Methoden der Vertrauensliste</translation>
    </message>
    <message>
        <source>Trust list changed</source>
        <translation>Vertrauensliste geändert</translation>
    </message>
    <message>
        <source>it has no trust list</source>
        <translation>sie hat keine Vertrauensliste</translation>
    </message>
    <message>
        <source>none is told</source>
        <translation>keine wird genannt</translation>
    </message>
</context>
<context>
    <name>QlumPushListPage</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>&amp;Add File...</source>
        <translation>Datei hin&amp;zufügen...</translation>
    </message>
    <message>
        <source>&amp;Certificate Manager...</source>
        <translation>Zertifikats&amp;verwaltung...</translation>
    </message>
    <message>
        <source>&amp;Read</source>
        <translation>&amp;Lesen</translation>
    </message>
    <message>
        <source>&amp;Undo Changes</source>
        <translation>Änderungen &amp;rückgängig machen</translation>
    </message>
    <message>
        <source>&amp;Write Back...</source>
        <translation>Zurückschrei&amp;ben...</translation>
    </message>
    <message>
        <source>&apos;%1&apos; was not added.</source>
        <translation>„%1“ wurde nicht hinzugefügt.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Certificate Group&lt;/b&gt;&lt;br&gt;Whose trust list is shown. Write or undo the changes before you choose another one.</source>
        <translation>&lt;b&gt;Zertifikatsgruppe&lt;/b&gt;&lt;br&gt;Deren Vertrauensliste gezeigt wird. Änderungen sind zu schreiben oder zurückzunehmen, bevor eine andere gewählt wird.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Send Each Change at Once&lt;/b&gt;&lt;br&gt;Certificates are added and removed one by one, and count at once. Otherwise changes are gathered here until the whole list is written back, which is the only way for revocation lists.</source>
        <translation>&lt;b&gt;Jede Änderung sofort senden&lt;/b&gt;&lt;br&gt;Zertifikate werden einzeln hinzugefügt und entfernt und gelten sofort. Sonst werden Änderungen hier gesammelt, bis die ganze Liste zurückgeschrieben wird; für Sperrlisten ist das der einzige Weg.</translation>
    </message>
    <message>
        <source>Add From S&amp;tore...</source>
        <translation>Aus dem S&amp;peicher hinzufügen...</translation>
    </message>
    <message>
        <source>Add and remove single certificates without writing the whole list</source>
        <translation>Einzelne Zertifikate hinzufügen und entfernen, ohne die ganze Liste zu schreiben</translation>
    </message>
    <message>
        <source>Add the certificates or the revocation list of a file to this part</source>
        <translation>Die Zertifikate oder die Sperrliste einer Datei diesem Teil hinzufügen</translation>
    </message>
    <message>
        <source>Add to the Trust List</source>
        <translation>Zur Vertrauensliste hinzufügen</translation>
    </message>
    <message>
        <source>Add what this client&apos;s own store has</source>
        <translation>Hinzufügen, was der eigene Speicher dieses Clients hat</translation>
    </message>
    <message>
        <source>Certificate &amp;group:</source>
        <translation>Zertifikats&amp;gruppe:</translation>
    </message>
    <message>
        <source>Certificates and revocation lists (*.der *.pem *.crt *.cer *.crl);;All files (*)</source>
        <translation>Zertifikate und Sperrlisten (*.der *.pem *.crt *.cer *.crl);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Changed on the server %1.</source>
        <translation>Auf dem Server geändert: %1.</translation>
    </message>
    <message>
        <source>It holds neither certificates nor a revocation list.</source>
        <translation>Sie enthält weder Zertifikate noch eine Sperrliste.</translation>
    </message>
    <message>
        <source>It is in the list already.</source>
        <translation>Es steht schon in der Liste.</translation>
    </message>
    <message>
        <source>No revocation list of %1: the server may refuse what it has signed.</source>
        <translation>Keine Sperrliste von %1: Der Server lehnt vielleicht ab, was sie signiert hat.</translation>
    </message>
    <message>
        <source>Not written yet: %1.</source>
        <translation>Noch nicht geschrieben: %1.</translation>
    </message>
    <message>
        <source>Nothing here. Read the list of a connected server, or drop files or certificates to add them.</source>
        <translation>Hier ist nichts. Lesen Sie die Liste eines verbundenen Servers, oder ziehen Sie Dateien oder Zertifikate hierher, um sie hinzuzufügen.</translation>
    </message>
    <message>
        <source>Nothing was added.</source>
        <translation>Es wurde nichts hinzugefügt.</translation>
    </message>
    <message>
        <source>Open the certificates of this client beside this view, to drag some onto the list</source>
        <translation>Die Zertifikate dieses Clients neben dieser Ansicht öffnen, um einige auf die Liste zu ziehen</translation>
    </message>
    <message>
        <source>Parts of the trust list</source>
        <translation>Teile der Vertrauensliste</translation>
    </message>
    <message>
        <source>Re&amp;move</source>
        <translation>Entfer&amp;nen</translation>
    </message>
    <message>
        <source>Read the trust list from the server</source>
        <translation>Die Vertrauensliste vom Server lesen</translation>
    </message>
    <message>
        <source>Remove what is selected</source>
        <translation>Das Gewählte entfernen</translation>
    </message>
    <message>
        <source>Replace the trust list of the server by this one</source>
        <translation>Die Vertrauensliste des Servers durch diese ersetzen</translation>
    </message>
    <message>
        <source>Send each change at &amp;once</source>
        <translation>Jede Änderung s&amp;ofort senden</translation>
    </message>
    <message>
        <source>Show the certificate that is selected</source>
        <translation>Das gewählte Zertifikat zeigen</translation>
    </message>
    <message>
        <source>Show the list as it was read from the server</source>
        <translation>Die Liste zeigen, wie sie vom Server gelesen wurde</translation>
    </message>
    <message>
        <source>Show...</source>
        <translation>Zeigen...</translation>
    </message>
    <message>
        <source>Since it was read before: %1.</source>
        <translation>Seit dem letzten Lesen: %1.</translation>
    </message>
    <message>
        <source>The list cannot be changed at the moment, or not by this user.</source>
        <translation>Die Liste kann gerade nicht geändert werden, oder nicht von diesem Benutzer.</translation>
    </message>
    <message>
        <source>The trust list has to be read before.</source>
        <translation>Die Vertrauensliste muss vorher gelesen werden.</translation>
    </message>
</context>
<context>
    <name>QlumPushListTable</name>
    <message>
        <source>%1 (not written yet)</source>
        <translation>%1 (noch nicht geschrieben)</translation>
    </message>
</context>
<context>
    <name>QlumPushLoginDialog</name>
    <message>
        <source>%1 will be connected anew, signed and encrypted, as the user who may configure it.</source>
        <translation>%1 wird neu verbunden, signiert und verschlüsselt, als der Benutzer, der ihn einrichten darf.</translation>
    </message>
    <message>
        <source>&amp;Connect</source>
        <translation>&amp;Verbinden</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Kennwort:</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>&amp;Benutzername:</translation>
    </message>
    <message>
        <source>Connect as Administrator</source>
        <translation>Als Administrator verbinden</translation>
    </message>
</context>
<context>
    <name>QlumPushPlanDialog</name>
    <message>
        <source>&amp;Send</source>
        <translation>&amp;Senden</translation>
    </message>
    <message>
        <source>C&amp;opy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>I have read the warning and &amp;want this</source>
        <translation>Ich habe die Warnung gelesen und &amp;will das</translation>
    </message>
    <message>
        <source>I have read the warning and want this</source>
        <translation>Ich habe die Warnung gelesen und will das</translation>
    </message>
    <message>
        <source>Not written: %1</source>
        <translation>Nicht geschrieben: %1</translation>
    </message>
    <message>
        <source>Note: %1</source>
        <translation>Hinweis: %1</translation>
    </message>
    <message>
        <source>Sa&amp;ve...</source>
        <translation>S&amp;peichern...</translation>
    </message>
    <message>
        <source>Save Plan</source>
        <translation>Plan speichern</translation>
    </message>
    <message>
        <source>Send to the Server?</source>
        <translation>An den Server senden?</translation>
    </message>
    <message>
        <source>Texts (*.txt);;All files (*)</source>
        <translation>Texte (*.txt);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>This will be sent to the server:</source>
        <translation>Das wird an den Server gesendet:</translation>
    </message>
    <message>
        <source>Warning: %1</source>
        <translation>Warnung: %1</translation>
    </message>
    <message>
        <source>What will be sent</source>
        <translation>Was gesendet wird</translation>
    </message>
</context>
<context>
    <name>QlumPushRecordPage</name>
    <message>
        <source>&amp;Copy Record</source>
        <translation>Aufzeichnung ko&amp;pieren</translation>
    </message>
    <message>
        <source>&lt;b&gt;Record&lt;/b&gt;&lt;br&gt;What was sent, when, by whom, and what the server answered.</source>
        <translation>&lt;b&gt;Aufzeichnung&lt;/b&gt;&lt;br&gt;Was gesendet wurde, wann, von wem und was der Server geantwortet hat.</translation>
    </message>
    <message>
        <source>Every call to the server&apos;s configuration is written down here.</source>
        <translation>Jeder Aufruf an die Konfiguration des Servers wird hier festgehalten.</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Aufzeichnung</translation>
    </message>
    <message>
        <source>Sa&amp;ve Record...</source>
        <translation>Aufzeichnung spei&amp;chern...</translation>
    </message>
    <message>
        <source>Save Record</source>
        <translation>Aufzeichnung speichern</translation>
    </message>
</context>
<context>
    <name>QlumPushServerPage</name>
    <message>
        <source>%1 bytes</source>
        <translation>%1 Bytes</translation>
    </message>
    <message>
        <source>%1; an administrator on an encrypted connection may see more</source>
        <translation>%1; ein Administrator auf einer verschlüsselten Verbindung sieht vielleicht mehr</translation>
    </message>
    <message>
        <source>Certificate groups</source>
        <translation>Zertifikatsgruppen</translation>
    </message>
    <message>
        <source>Connection:</source>
        <translation>Verbindung:</translation>
    </message>
    <message>
        <source>Maximum size of a trust list:</source>
        <translation>Maximale Größe einer Vertrauensliste:</translation>
    </message>
    <message>
        <source>Methods:</source>
        <translation>Methoden:</translation>
    </message>
    <message>
        <source>Missing:</source>
        <translation>Fehlt:</translation>
    </message>
    <message>
        <source>Multicast DNS:</source>
        <translation>Multicast-DNS:</translation>
    </message>
    <message>
        <source>Private key formats:</source>
        <translation>Formate privater Schlüssel:</translation>
    </message>
    <message>
        <source>Secure element for keys:</source>
        <translation>Sicheres Element für Schlüssel:</translation>
    </message>
    <message>
        <source>Server capabilities:</source>
        <translation>Fähigkeiten des Servers:</translation>
    </message>
    <message>
        <source>The certificate groups of a connected server appear here.</source>
        <translation>Hier erscheinen die Zertifikatsgruppen eines verbundenen Servers.</translation>
    </message>
    <message>
        <source>no</source>
        <translation>nein</translation>
    </message>
    <message>
        <source>no limit</source>
        <translation>keine Grenze</translation>
    </message>
    <message>
        <source>none: the server takes no private keys</source>
        <translation>keine: Der Server nimmt keine privaten Schlüssel an</translation>
    </message>
    <message>
        <source>not known</source>
        <translation>nicht bekannt</translation>
    </message>
    <message>
        <source>not secured: not enough to configure a server</source>
        <translation>nicht gesichert: reicht nicht, um einen Server einzurichten</translation>
    </message>
    <message>
        <source>nothing</source>
        <translation>nichts</translation>
    </message>
    <message>
        <source>signed and encrypted</source>
        <translation>signiert und verschlüsselt</translation>
    </message>
    <message>
        <source>signed, but not encrypted: not enough to configure a server</source>
        <translation>signiert, aber nicht verschlüsselt: reicht nicht, um einen Server einzurichten</translation>
    </message>
    <message>
        <source>the server does not tell</source>
        <translation>der Server sagt es nicht</translation>
    </message>
    <message>
        <source>the server tells of none</source>
        <translation>der Server nennt keine</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
</context>
<context>
    <name>QlumPushSigning</name>
    <message>
        <source>Keys cannot be made in the format %1 here.</source>
        <translation>Schlüssel im Format %1 können hier nicht erzeugt werden.</translation>
    </message>
    <message>
        <source>The authority could not be opened: the password is wrong, or its files are damaged.</source>
        <translation>Die Zertifizierungsstelle konnte nicht geöffnet werden: Das Kennwort ist falsch, oder ihre Dateien sind beschädigt.</translation>
    </message>
    <message>
        <source>The certificate belongs neither to a request that was made here nor to the key that the server uses now. A server that takes it all the same may not be reached any more.</source>
        <translation>Das Zertifikat gehört weder zu einem Antrag, der hier erstellt wurde, noch zu dem Schlüssel, den der Server jetzt verwendet. Ein Server, der es trotzdem nimmt, ist vielleicht nicht mehr zu erreichen.</translation>
    </message>
    <message>
        <source>The certificate is for the application %1, and the server is %2.</source>
        <translation>Das Zertifikat ist für die Anwendung %1, und der Server ist %2.</translation>
    </message>
    <message>
        <source>The file holds no certificate.</source>
        <translation>Die Datei enthält kein Zertifikat.</translation>
    </message>
    <message>
        <source>The request could not be signed: %1</source>
        <translation>Der Antrag konnte nicht signiert werden: %1</translation>
    </message>
</context>
<context>
    <name>QlumPushView</name>
    <message>
        <source>%1 (anonymous)</source>
        <translation>%1 (anonym)</translation>
    </message>
    <message>
        <source>%1 applies the changes; the connection that breaks now comes back. When it presents its new certificate you are asked whether to trust it.</source>
        <translation>%1 wendet die Änderungen an; die Verbindung, die jetzt abbricht, kommt zurück. Wenn er sein neues Zertifikat vorlegt, werden Sie gefragt, ob Sie ihm vertrauen.</translation>
    </message>
    <message>
        <source>%1 as %2</source>
        <translation>%1 als %2</translation>
    </message>
    <message>
        <source>%1 cannot be configured over this connection.</source>
        <translation>%1 kann über diese Verbindung nicht eingerichtet werden.</translation>
    </message>
    <message>
        <source>%1 has no object ServerConfiguration: its certificates cannot be configured from here.</source>
        <translation>%1 hat kein Objekt ServerConfiguration: Seine Zertifikate können von hier nicht eingerichtet werden.</translation>
    </message>
    <message>
        <source>%1 has not come back since the changes were applied.</source>
        <translation>%1 ist nicht zurückgekehrt, seit die Änderungen angewendet wurden.</translation>
    </message>
    <message>
        <source>%1 still has its old certificate.</source>
        <translation>%1 hat noch sein altes Zertifikat.</translation>
    </message>
    <message>
        <source>%1 was not added to the trusted certificates.</source>
        <translation>%1 wurde den vertrauten Zertifikaten nicht hinzugefügt.</translation>
    </message>
    <message>
        <source>%1 was reset to its defaults.</source>
        <translation>%1 wurde auf seine Vorgaben zurückgesetzt.</translation>
    </message>
    <message>
        <source>&amp;Read Again</source>
        <translation>&amp;Neu lesen</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>Auf&amp;frischen</translation>
    </message>
    <message>
        <source>&amp;Trust</source>
        <translation>&amp;Vertrauen</translation>
    </message>
    <message>
        <source>&apos;%1&apos; cannot be written.</source>
        <translation>„%1“ kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Connect as Administrator&lt;/b&gt;&lt;br&gt;Servers let administrators configure them, over connections that are signed and encrypted.</source>
        <translation>&lt;b&gt;Als Administrator verbinden&lt;/b&gt;&lt;br&gt;Server lassen sich von Administratoren einrichten, über signierte und verschlüsselte Verbindungen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Refresh&lt;/b&gt;&lt;br&gt;Reads what the server tells of its configuration, its trust list and its rejected certificates.</source>
        <translation>&lt;b&gt;Auffrischen&lt;/b&gt;&lt;br&gt;Liest, was der Server über seine Konfiguration sagt, seine Vertrauensliste und seine abgelehnten Zertifikate.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Trust&lt;/b&gt;&lt;br&gt;Adds the selected certificate to the trust list. Whether it then leaves the rejected ones is up to the server.</source>
        <translation>&lt;b&gt;Vertrauen&lt;/b&gt;&lt;br&gt;Fügt das gewählte Zertifikat der Vertrauensliste hinzu. Ob es dann die abgelehnten verlässt, entscheidet der Server.</translation>
    </message>
    <message>
        <source>A new certificate for %1</source>
        <translation>Ein neues Zertifikat für %1</translation>
    </message>
    <message>
        <source>A request for a certificate of %1</source>
        <translation>Ein Antrag für ein Zertifikat von %1</translation>
    </message>
    <message>
        <source>Add a certificate to the trust list of %1</source>
        <translation>Ein Zertifikat zur Vertrauensliste von %1 hinzufügen</translation>
    </message>
    <message>
        <source>Add the selected certificate to those that the server trusts</source>
        <translation>Das gewählte Zertifikat denen hinzufügen, denen der Server vertraut</translation>
    </message>
    <message>
        <source>Adding a certificate to a trust list</source>
        <translation>Ein Zertifikat zu einer Vertrauensliste hinzufügen</translation>
    </message>
    <message>
        <source>All is well: %1 is back with its new certificate.</source>
        <translation>Alles in Ordnung: %1 ist mit seinem neuen Zertifikat zurück.</translation>
    </message>
    <message>
        <source>Another connect is under way. Try again when it has ended.</source>
        <translation>Es wird gerade anderswo verbunden. Versuchen Sie es danach erneut.</translation>
    </message>
    <message>
        <source>App&amp;ly Changes...</source>
        <translation>Änderungen an&amp;wenden...</translation>
    </message>
    <message>
        <source>Apply the changes on %1</source>
        <translation>Die Änderungen auf %1 anwenden</translation>
    </message>
    <message>
        <source>ApplyChanges: %1</source>
        <translation>ApplyChanges: %1</translation>
    </message>
    <message>
        <source>Applying changes of a server&apos;s configuration</source>
        <translation>Änderungen der Konfiguration eines Servers anwenden</translation>
    </message>
    <message>
        <source>Asking for a signing request</source>
        <translation>Einen Zertifikatsantrag anfordern</translation>
    </message>
    <message>
        <source>CancelChanges: %1</source>
        <translation>CancelChanges: %1</translation>
    </message>
    <message>
        <source>Certificate requests (*.csr);;All files (*)</source>
        <translation>Zertifikatsanträge (*.csr);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Certificates (*.der *.pem *.crt *.cer);;All files (*)</source>
        <translation>Zertifikate (*.der *.pem *.crt *.cer);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Certificates and trust lists of the server are lost; afterwards it may trust nobody.</source>
        <translation>Zertifikate und Vertrauenslisten des Servers gehen verloren; danach vertraut er vielleicht niemandem.</translation>
    </message>
    <message>
        <source>Changing a trust list</source>
        <translation>Eine Vertrauensliste ändern</translation>
    </message>
    <message>
        <source>Clients that check for revocation need the issuer&apos;s revocation list in their stores, this one as well.</source>
        <translation>Clients, die auf Sperrung prüfen, brauchen die Sperrliste des Ausstellers in ihrem Speicher, auch dieser.</translation>
    </message>
    <message>
        <source>Connect as &amp;Administrator...</source>
        <translation>Als &amp;Administrator verbinden...</translation>
    </message>
    <message>
        <source>Connect it by hand. If it refuses this client, somebody has to put its certificates in order on the server itself.</source>
        <translation>Verbinden Sie ihn von Hand. Lehnt er diesen Client ab, muss jemand seine Zertifikate auf dem Server selbst in Ordnung bringen.</translation>
    </message>
    <message>
        <source>Connect the server anew, encrypted and as somebody who may configure it</source>
        <translation>Den Server neu verbinden, verschlüsselt und als jemand, der ihn einrichten darf</translation>
    </message>
    <message>
        <source>CreateSigningRequest</source>
        <translation>CreateSigningRequest</translation>
    </message>
    <message>
        <source>CreateSigningRequest; the server keeps its key</source>
        <translation>CreateSigningRequest; der Server behält seinen Schlüssel</translation>
    </message>
    <message>
        <source>CreateSigningRequest; the server makes a new key</source>
        <translation>CreateSigningRequest; der Server erzeugt einen neuen Schlüssel</translation>
    </message>
    <message>
        <source>Discard the changes on %1</source>
        <translation>Die Änderungen auf %1 verwerfen</translation>
    </message>
    <message>
        <source>Discarding changes of a server&apos;s configuration</source>
        <translation>Änderungen der Konfiguration eines Servers verwerfen</translation>
    </message>
    <message>
        <source>Export it, and add it in the certificate manager.</source>
        <translation>Exportieren Sie sie, und fügen Sie sie in der Zertifikatsverwaltung hinzu.</translation>
    </message>
    <message>
        <source>Folder for the Authority&apos;s Certificate and Revocation List</source>
        <translation>Ordner für Zertifikat und Sperrliste der Zertifizierungsstelle</translation>
    </message>
    <message>
        <source>GDS View (Push Model)</source>
        <translation>GDS-Ansicht (Push-Modell)</translation>
    </message>
    <message>
        <source>Have the server use what was sent; it may close all connections</source>
        <translation>Den Server verwenden lassen, was gesendet wurde; er schließt vielleicht alle Verbindungen</translation>
    </message>
    <message>
        <source>Import Answer</source>
        <translation>Antwort importieren</translation>
    </message>
    <message>
        <source>It counts at once.</source>
        <translation>Das gilt sofort.</translation>
    </message>
    <message>
        <source>It counts only when the changes are applied.</source>
        <translation>Das gilt erst, wenn die Änderungen angewendet werden.</translation>
    </message>
    <message>
        <source>It did not take over what was sent, or uses certificates of that type for other endpoints. Its own log should say.</source>
        <translation>Er hat das Gesendete nicht übernommen, oder er verwendet Zertifikate dieses Typs für andere Endpunkte. Sein eigenes Protokoll sollte es sagen.</translation>
    </message>
    <message>
        <source>It does not ask for the changes to be applied.</source>
        <translation>Er verlangt nicht, dass die Änderungen angewendet werden.</translation>
    </message>
    <message>
        <source>It is not known whether the changes were applied.</source>
        <translation>Ob die Änderungen angewendet wurden, ist nicht bekannt.</translation>
    </message>
    <message>
        <source>It may close its connections and come back with the certificate that it had at first.</source>
        <translation>Er schließt vielleicht seine Verbindungen und kommt mit dem Zertifikat zurück, das er zuerst hatte.</translation>
    </message>
    <message>
        <source>Make a key here</source>
        <translation>Hier einen Schlüssel erzeugen</translation>
    </message>
    <message>
        <source>Making a certificate for a server</source>
        <translation>Ein Zertifikat für einen Server erstellen</translation>
    </message>
    <message>
        <source>Missing, or not shown to this user: %1</source>
        <translation>Fehlt oder wird diesem Benutzer nicht gezeigt: %1</translation>
    </message>
    <message>
        <source>New Certificate</source>
        <translation>Neues Zertifikat</translation>
    </message>
    <message>
        <source>Not applied yet: %1.</source>
        <translation>Noch nicht angewendet: %1.</translation>
    </message>
    <message>
        <source>Not everything can be configured on %1.</source>
        <translation>Auf %1 lässt sich nicht alles einrichten.</translation>
    </message>
    <message>
        <source>Nothing here: the server was not asked, or has turned away no certificate.</source>
        <translation>Hier ist nichts: Der Server wurde nicht gefragt oder hat kein Zertifikat abgewiesen.</translation>
    </message>
    <message>
        <source>Nothing was written: somebody else has changed the trust list meanwhile.</source>
        <translation>Es wurde nichts geschrieben: Jemand anderes hat die Vertrauensliste inzwischen geändert.</translation>
    </message>
    <message>
        <source>Open, Write and CloseAndUpdate with: %1</source>
        <translation>Open, Write und CloseAndUpdate mit: %1</translation>
    </message>
    <message>
        <source>Plan: %1</source>
        <translation>Plan: %1</translation>
    </message>
    <message>
        <source>Put the authority among the issuers that this client knows: it can check the new certificate then, and trusts nobody by that</source>
        <translation>Die Zertifizierungsstelle unter die Aussteller aufnehmen, die dieser Client kennt: Er kann das neue Zertifikat dann prüfen und vertraut dadurch niemandem</translation>
    </message>
    <message>
        <source>Read LastUpdateTime, and stop if somebody else has changed the list</source>
        <translation>LastUpdateTime lesen und aufhören, wenn jemand anderes die Liste geändert hat</translation>
    </message>
    <message>
        <source>Read Re&amp;jected</source>
        <translation>Ab&amp;gelehnte lesen</translation>
    </message>
    <message>
        <source>Read everything from the server again</source>
        <translation>Alles erneut vom Server lesen</translation>
    </message>
    <message>
        <source>Read it again: what you have changed is kept, and can be written then.</source>
        <translation>Lesen Sie sie neu: Ihre Änderungen bleiben erhalten und können danach geschrieben werden.</translation>
    </message>
    <message>
        <source>Read the certificates that the server has turned away</source>
        <translation>Die Zertifikate lesen, die der Server abgewiesen hat</translation>
    </message>
    <message>
        <source>Reading a trust list</source>
        <translation>Eine Vertrauensliste lesen</translation>
    </message>
    <message>
        <source>Reading rejected certificates</source>
        <translation>Abgelehnte Zertifikate lesen</translation>
    </message>
    <message>
        <source>Reading what a server tells of its configuration</source>
        <translation>Lesen, was ein Server über seine Konfiguration sagt</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Aufzeichnung</translation>
    </message>
    <message>
        <source>Rejected</source>
        <translation>Abgelehnt</translation>
    </message>
    <message>
        <source>Rejected certificates</source>
        <translation>Abgelehnte Zertifikate</translation>
    </message>
    <message>
        <source>Remove a certificate from the trust list of %1</source>
        <translation>Ein Zertifikat aus der Vertrauensliste von %1 entfernen</translation>
    </message>
    <message>
        <source>Replace the trust list of %1</source>
        <translation>Die Vertrauensliste von %1 ersetzen</translation>
    </message>
    <message>
        <source>Reset %1 to its defaults</source>
        <translation>%1 auf seine Vorgaben zurücksetzen</translation>
    </message>
    <message>
        <source>Resetting a server&apos;s configuration</source>
        <translation>Die Konfiguration eines Servers zurücksetzen</translation>
    </message>
    <message>
        <source>Save Request</source>
        <translation>Antrag speichern</translation>
    </message>
    <message>
        <source>Select a server in the project to configure its certificates.</source>
        <translation>Wählen Sie im Projekt einen Server, um seine Zertifikate einzurichten.</translation>
    </message>
    <message>
        <source>Sending a certificate to a server</source>
        <translation>Ein Zertifikat an einen Server senden</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Server configuration</source>
        <translation>Serverkonfiguration</translation>
    </message>
    <message>
        <source>Sign it with the authority of this computer</source>
        <translation>Mit der Zertifizierungsstelle dieses Rechners signieren</translation>
    </message>
    <message>
        <source>Sign the request with the authority of this computer</source>
        <translation>Den Antrag mit der Zertifizierungsstelle dieses Rechners signieren</translation>
    </message>
    <message>
        <source>Somebody else has changed the trust list since it was read.</source>
        <translation>Jemand anderes hat die Vertrauensliste geändert, seit sie gelesen wurde.</translation>
    </message>
    <message>
        <source>The authority could not be put among the issuers that this client knows.</source>
        <translation>Die Zertifizierungsstelle konnte nicht unter die Aussteller aufgenommen werden, die dieser Client kennt.</translation>
    </message>
    <message>
        <source>The authority was not exported.</source>
        <translation>Die Zertifizierungsstelle wurde nicht exportiert.</translation>
    </message>
    <message>
        <source>The authority was not made.</source>
        <translation>Die Zertifizierungsstelle wurde nicht angelegt.</translation>
    </message>
    <message>
        <source>The changes were not applied.</source>
        <translation>Die Änderungen wurden nicht angewendet.</translation>
    </message>
    <message>
        <source>The changes were not discarded.</source>
        <translation>Die Änderungen wurden nicht verworfen.</translation>
    </message>
    <message>
        <source>The record was not written.</source>
        <translation>Die Aufzeichnung wurde nicht geschrieben.</translation>
    </message>
    <message>
        <source>The rejected certificates could not be read.</source>
        <translation>Die abgelehnten Zertifikate konnten nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The request was not saved.</source>
        <translation>Der Antrag wurde nicht gespeichert.</translation>
    </message>
    <message>
        <source>The server cannot be connected anew just now.</source>
        <translation>Der Server kann gerade nicht neu verbunden werden.</translation>
    </message>
    <message>
        <source>The server closes all connections. This client connects again and asks whether to trust the new certificate; its thumbprint is %1.</source>
        <translation>Der Server schließt alle Verbindungen. Dieser Client verbindet erneut und fragt, ob er dem neuen Zertifikat vertrauen soll; sein Fingerabdruck ist %1.</translation>
    </message>
    <message>
        <source>The server did not get a new certificate.</source>
        <translation>Der Server bekam kein neues Zertifikat.</translation>
    </message>
    <message>
        <source>The server has made no request.</source>
        <translation>Der Server hat keinen Antrag erstellt.</translation>
    </message>
    <message>
        <source>The server has taken the %1.</source>
        <translation>Der Server hat angenommen: %1.</translation>
    </message>
    <message>
        <source>The server then no longer trusts the certificate of this client: you lock yourself out.</source>
        <translation>Der Server vertraut dann dem Zertifikat dieses Clients nicht mehr: Sie sperren sich aus.</translation>
    </message>
    <message>
        <source>The server uses it when the changes are applied, and forgets it with this connection.</source>
        <translation>Der Server verwendet es, wenn die Änderungen angewendet werden, und vergisst es mit dieser Verbindung.</translation>
    </message>
    <message>
        <source>The server was not reset.</source>
        <translation>Der Server wurde nicht zurückgesetzt.</translation>
    </message>
    <message>
        <source>The trust list could not be read.</source>
        <translation>Die Vertrauensliste konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The trust list was not changed.</source>
        <translation>Die Vertrauensliste wurde nicht geändert.</translation>
    </message>
    <message>
        <source>The trust list was not written.</source>
        <translation>Die Vertrauensliste wurde nicht geschrieben.</translation>
    </message>
    <message>
        <source>There is no connection to %1. Connect it to configure its certificates.</source>
        <translation>Es gibt keine Verbindung zu %1. Verbinden Sie ihn, um seine Zertifikate einzurichten.</translation>
    </message>
    <message>
        <source>There is no revocation list of %1; the server may refuse what it has signed.</source>
        <translation>Es gibt keine Sperrliste von %1; der Server lehnt vielleicht ab, was sie signiert hat.</translation>
    </message>
    <message>
        <source>Trust List</source>
        <translation>Vertrauensliste</translation>
    </message>
    <message>
        <source>UpdateCertificate with the certificate and its issuer</source>
        <translation>UpdateCertificate mit dem Zertifikat und seinem Aussteller</translation>
    </message>
    <message>
        <source>UpdateCertificate with the certificate, its issuer and the key as %1; the key is wiped here</source>
        <translation>UpdateCertificate mit dem Zertifikat, seinem Aussteller und dem Schlüssel als %1; der Schlüssel wird hier gelöscht</translation>
    </message>
    <message>
        <source>UpdateCertificate with what %1 holds</source>
        <translation>UpdateCertificate mit dem Inhalt von %1</translation>
    </message>
    <message>
        <source>What %1 tells of its configuration could not be read.</source>
        <translation>Was %1 über seine Konfiguration sagt, konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Write it to %1</source>
        <translation>Nach %1 schreiben</translation>
    </message>
    <message>
        <source>Writing a trust list</source>
        <translation>Eine Vertrauensliste schreiben</translation>
    </message>
    <message>
        <source>certificate %1</source>
        <translation>Zertifikat %1</translation>
    </message>
    <message>
        <source>trust list of %1</source>
        <translation>Vertrauensliste von %1</translation>
    </message>
    <message>
        <source>working...</source>
        <translation>in Arbeit...</translation>
    </message>
</context>
<context>
    <name>QlumPushWords</name>
    <message>
        <source>an issuer of the certificate is missing</source>
        <translation>ein Aussteller des Zertifikats fehlt</translation>
    </message>
    <message>
        <source>another certificate of the list needs this one for its chain</source>
        <translation>ein anderes Zertifikat der Liste braucht dieses für seine Kette</translation>
    </message>
    <message>
        <source>another session has changes there that are not applied yet</source>
        <translation>eine andere Sitzung hat dort Änderungen, die noch nicht angewendet sind</translation>
    </message>
    <message>
        <source>somebody has the trust list open already</source>
        <translation>jemand hat die Vertrauensliste bereits offen</translation>
    </message>
    <message>
        <source>somebody has the trust list open for writing</source>
        <translation>jemand hat die Vertrauensliste zum Schreiben offen</translation>
    </message>
    <message>
        <source>the certificate does not pass the checks of the server: it does not belong to its key, or its issuers are not all there</source>
        <translation>das Zertifikat besteht die Prüfungen des Servers nicht: Es gehört nicht zu seinem Schlüssel, oder seine Aussteller sind nicht alle da</translation>
    </message>
    <message>
        <source>the certificate is not valid, or an issuer that it needs is not in the list</source>
        <translation>das Zertifikat ist nicht gültig, oder ein Aussteller, den es braucht, ist nicht in der Liste</translation>
    </message>
    <message>
        <source>the certificate is not valid, or not of the type that is asked for</source>
        <translation>das Zertifikat ist nicht gültig oder nicht vom verlangten Typ</translation>
    </message>
    <message>
        <source>the certificate names another application URI than that of the server</source>
        <translation>das Zertifikat nennt eine andere Anwendungs-URI als die des Servers</translation>
    </message>
    <message>
        <source>the list has no such certificate (any more)</source>
        <translation>die Liste hat kein solches Zertifikat (mehr)</translation>
    </message>
    <message>
        <source>the method cannot be called at the moment</source>
        <translation>die Methode kann im Moment nicht aufgerufen werden</translation>
    </message>
    <message>
        <source>the server allows this on connections with SignAndEncrypt only</source>
        <translation>der Server erlaubt das nur über Verbindungen mit SignAndEncrypt</translation>
    </message>
    <message>
        <source>the server cannot make keys for certificates of this type</source>
        <translation>der Server kann keine Schlüssel für Zertifikate dieses Typs erzeugen</translation>
    </message>
    <message>
        <source>the server does not accept the certificate group, the type, the subject or the nonce</source>
        <translation>der Server nimmt Zertifikatsgruppe, Typ, Inhaber oder Nonce nicht an</translation>
    </message>
    <message>
        <source>the server does not know the certificate group or type</source>
        <translation>der Server kennt Zertifikatsgruppe oder Typ nicht</translation>
    </message>
    <message>
        <source>the server does not know the opened file any more</source>
        <translation>der Server kennt die geöffnete Datei nicht mehr</translation>
    </message>
    <message>
        <source>the server does not take private keys of this format, or no keys at all</source>
        <translation>der Server nimmt keine privaten Schlüssel in diesem Format oder gar keine</translation>
    </message>
    <message>
        <source>the server has answered something that cannot be read</source>
        <translation>der Server hat etwas geantwortet, das nicht gelesen werden kann</translation>
    </message>
    <message>
        <source>the server has found certificates or revocation lists that it does not accept</source>
        <translation>der Server hat Zertifikate oder Sperrlisten gefunden, die er nicht annimmt</translation>
    </message>
    <message>
        <source>the server has no such method</source>
        <translation>der Server hat keine solche Methode</translation>
    </message>
    <message>
        <source>the server has not answered; refresh to see which certificate it uses now</source>
        <translation>der Server hat nicht geantwortet; frischen Sie auf, um zu sehen, welches Zertifikat er jetzt verwendet</translation>
    </message>
    <message>
        <source>the server has the method but does nothing with it</source>
        <translation>der Server hat die Methode, tut aber nichts damit</translation>
    </message>
    <message>
        <source>the trust list is larger than the server allows</source>
        <translation>die Vertrauensliste ist größer, als der Server erlaubt</translation>
    </message>
    <message>
        <source>there is no change that could be cancelled</source>
        <translation>es gibt keine Änderung, die verworfen werden könnte</translation>
    </message>
    <message>
        <source>there is no change that waits to be applied</source>
        <translation>es gibt keine Änderung, die auf Anwendung wartet</translation>
    </message>
    <message>
        <source>this user may not configure the server; connect as an administrator</source>
        <translation>dieser Benutzer darf den Server nicht einrichten; verbinden Sie als Administrator</translation>
    </message>
</context>
<context>
    <name>QlumReadJob</name>
    <message>
        <source>Attribute Plugin</source>
        <translation>Plugin Attribute</translation>
    </message>
    <message>
        <source>Read NodeClass of node &apos;%1&apos; failed [ret = %2].</source>
        <translation>Lesen der NodeClass von Knoten „%1“ fehlgeschlagen [ret = %2].</translation>
    </message>
    <message>
        <source>Read attributes of node &apos;%1&apos; failed [ret = %2].</source>
        <translation>Lesen der Attribute von Knoten „%1“ fehlgeschlagen [ret = %2].</translation>
    </message>
    <message>
        <source>Read attributes of node &apos;%1&apos; succeeded [ret = %2].</source>
        <translation>Lesen der Attribute von Knoten „%1“ erfolgreich [ret = %2].</translation>
    </message>
    <message>
        <source>Session not valid.</source>
        <translation>Sitzung ungültig.</translation>
    </message>
    <message>
        <source>There is no session with the server.</source>
        <translation>Es gibt keine Sitzung mit dem Server.</translation>
    </message>
</context>
<context>
    <name>QlumRecentFiles</name>
    <message>
        <source>&amp;%1 %2</source>
        <translation>&amp;%1 %2</translation>
    </message>
    <message>
        <source>&amp;Recent Projects</source>
        <translation>&amp;Letzte Projekte</translation>
    </message>
    <message>
        <source>File not found</source>
        <translation>Datei nicht gefunden</translation>
    </message>
    <message>
        <source>The selected project file does not exist. It will be removed from the list of recent projects.</source>
        <translation>Die gewählte Projektdatei existiert nicht. Sie wird aus der Liste der letzten Projekte entfernt.</translation>
    </message>
</context>
<context>
    <name>QlumRecordModel</name>
    <message>
        <source>Item</source>
        <translation>Element</translation>
    </message>
    <message>
        <source>Received</source>
        <translation>Empfangen</translation>
    </message>
    <message>
        <source>Sequence Number</source>
        <translation>Sequenznummer</translation>
    </message>
    <message>
        <source>Server Time</source>
        <translation>Serverzeit</translation>
    </message>
    <message>
        <source>Source Time</source>
        <translation>Quellzeit</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
</context>
<context>
    <name>QlumRecordedItemModel</name>
    <message>
        <source>Data Type</source>
        <translation>Datentyp</translation>
    </message>
    <message>
        <source>First</source>
        <translation>Erster</translation>
    </message>
    <message>
        <source>Last</source>
        <translation>Letzter</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Namespace</source>
        <translation>Namensraum</translation>
    </message>
    <message>
        <source>Node</source>
        <translation>Knoten</translation>
    </message>
    <message>
        <source>Records</source>
        <translation>Aufgezeichnete Werte</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
</context>
<context>
    <name>QlumRecordingModels</name>
    <message>
        <source>Connection back</source>
        <translation>Verbindung zurück</translation>
    </message>
    <message>
        <source>Connection lost</source>
        <translation>Verbindung verloren</translation>
    </message>
    <message>
        <source>Continues another file</source>
        <translation>Setzt eine andere Datei fort</translation>
    </message>
    <message>
        <source>Goes on</source>
        <translation>Es geht weiter</translation>
    </message>
    <message>
        <source>Item is reported</source>
        <translation>Element wird gemeldet</translation>
    </message>
    <message>
        <source>Item refused</source>
        <translation>Element abgelehnt</translation>
    </message>
    <message>
        <source>Item waits for its server</source>
        <translation>Element wartet auf seinen Server</translation>
    </message>
    <message>
        <source>New session</source>
        <translation>Neue Sitzung</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Notiz</translation>
    </message>
    <message>
        <source>Nothing was recorded</source>
        <translation>Es wurde nichts aufgezeichnet</translation>
    </message>
    <message>
        <source>Notification sent again</source>
        <translation>Notification erneut gesendet</translation>
    </message>
    <message>
        <source>Notifications missing</source>
        <translation>Notifications fehlen</translation>
    </message>
    <message>
        <source>Old records deleted</source>
        <translation>Alte Datensätze gelöscht</translation>
    </message>
    <message>
        <source>Paused: disk nearly full</source>
        <translation>Pause: Festplatte fast voll</translation>
    </message>
    <message>
        <source>Recording started</source>
        <translation>Aufzeichnung begonnen</translation>
    </message>
    <message>
        <source>Recording stopped</source>
        <translation>Aufzeichnung beendet</translation>
    </message>
    <message>
        <source>The clock was set, or the computer slept</source>
        <translation>Die Uhr wurde gestellt, oder der Rechner schlief</translation>
    </message>
    <message>
        <source>The server ended the subscription</source>
        <translation>Der Server hat die Subscription beendet</translation>
    </message>
    <message>
        <source>The server&apos;s queue lost values</source>
        <translation>Die Warteschlange des Servers hat Werte verloren</translation>
    </message>
    <message>
        <source>Values lost here</source>
        <translation>Werte hier verloren</translation>
    </message>
    <message>
        <source>Writing failed for a while</source>
        <translation>Schreiben war eine Weile nicht möglich</translation>
    </message>
</context>
<context>
    <name>QlumRecordingWindow</name>
    <message>
        <source>%1 values were written.</source>
        <translation>%1 Werte wurden geschrieben.</translation>
    </message>
    <message>
        <source>%1 was not written.</source>
        <translation>%1 wurde nicht geschrieben.</translation>
    </message>
    <message numerus="yes">
        <source>%1: %2 records of %n item(s); %3.</source>
        <translation>
            <numerusform>%1: %2 Datensätze von %n Element; %3.</numerusform>
            <numerusform>%1: %2 Datensätze von %n Elementen; %3.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n event(s) say that something may be missing</source>
        <translation>
            <numerusform>%n Ereignis sagt, dass etwas fehlen kann</numerusform>
            <numerusform>%n Ereignisse sagen, dass etwas fehlen kann</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>&amp;Events</source>
        <translation>&amp;Ereignisse</translation>
    </message>
    <message>
        <source>&amp;From:</source>
        <translation>&amp;Von:</translation>
    </message>
    <message>
        <source>&amp;Items</source>
        <translation>&amp;Elemente</translation>
    </message>
    <message>
        <source>&amp;Read Again</source>
        <translation>&amp;Neu lesen</translation>
    </message>
    <message>
        <source>&amp;Show Values</source>
        <translation>&amp;Werte zeigen</translation>
    </message>
    <message>
        <source>&amp;Values</source>
        <translation>&amp;Werte</translation>
    </message>
    <message>
        <source>&amp;to:</source>
        <translation>&amp;bis:</translation>
    </message>
    <message>
        <source>A curve shows up to a million values from the beginning of the time. Choose a shorter one.</source>
        <translation>Eine Kurve zeigt bis zu eine Million Werte ab Beginn der Zeit. Wählen Sie eine kürzere.</translation>
    </message>
    <message>
        <source>CSV files (*.csv)</source>
        <translation>CSV-Dateien (*.csv)</translation>
    </message>
    <message>
        <source>Choose a shorter time, or export them.</source>
        <translation>Wählen Sie eine kürzere Zeit, oder exportieren Sie sie.</translation>
    </message>
    <message>
        <source>Closes this window.</source>
        <translation>Schließt dieses Fenster.</translation>
    </message>
    <message>
        <source>E&amp;xport as CSV...</source>
        <translation>Als CSV e&amp;xportieren...</translation>
    </message>
    <message>
        <source>Events</source>
        <translation>Ereignisse</translation>
    </message>
    <message>
        <source>Export as CSV</source>
        <translation>Als CSV exportieren</translation>
    </message>
    <message>
        <source>Exporting a recording</source>
        <translation>Eine Aufzeichnung exportieren</translation>
    </message>
    <message>
        <source>For a recording that is still written.</source>
        <translation>Für eine Aufzeichnung, die noch geschrieben wird.</translation>
    </message>
    <message>
        <source>Items</source>
        <translation>Elemente</translation>
    </message>
    <message>
        <source>Long curves were cut.</source>
        <translation>Lange Kurven wurden gekürzt.</translation>
    </message>
    <message>
        <source>No view for curves is there.</source>
        <translation>Es gibt keine Ansicht für Kurven.</translation>
    </message>
    <message>
        <source>Nothing happened in this time.</source>
        <translation>In dieser Zeit ist nichts geschehen.</translation>
    </message>
    <message>
        <source>Of the reception.</source>
        <translation>Des Empfangs.</translation>
    </message>
    <message>
        <source>Only %1 values are shown.</source>
        <translation>Nur %1 Werte werden gezeigt.</translation>
    </message>
    <message>
        <source>Open in &amp;Trend View</source>
        <translation>Im &amp;Trend öffnen</translation>
    </message>
    <message>
        <source>Plots the values of the selected items in this time.</source>
        <translation>Zeichnet die Werte der gewählten Elemente in dieser Zeit.</translation>
    </message>
    <message>
        <source>Reading %1...</source>
        <translation>%1 wird gelesen...</translation>
    </message>
    <message>
        <source>Reading a recording</source>
        <translation>Eine Aufzeichnung lesen</translation>
    </message>
    <message>
        <source>Reading curves of a recording</source>
        <translation>Kurven einer Aufzeichnung lesen</translation>
    </message>
    <message>
        <source>Reading values of a recording</source>
        <translation>Werte einer Aufzeichnung lesen</translation>
    </message>
    <message>
        <source>Recording %1</source>
        <translation>Aufzeichnung %1</translation>
    </message>
    <message>
        <source>Select items and press &quot;Show Values&quot;.</source>
        <translation>Wählen Sie Elemente und drücken Sie „Werte zeigen“.</translation>
    </message>
    <message>
        <source>The recording cannot be plotted.</source>
        <translation>Die Aufzeichnung kann nicht gezeichnet werden.</translation>
    </message>
    <message>
        <source>The recording cannot be shown.</source>
        <translation>Die Aufzeichnung kann nicht gezeigt werden.</translation>
    </message>
    <message>
        <source>This recording has no items.</source>
        <translation>Diese Aufzeichnung hat keine Elemente.</translation>
    </message>
    <message>
        <source>Values</source>
        <translation>Werte</translation>
    </message>
    <message>
        <source>Values cannot be shown.</source>
        <translation>Werte können nicht gezeigt werden.</translation>
    </message>
    <message>
        <source>Values of the selected items in this time.</source>
        <translation>Werte der gewählten Elemente in dieser Zeit.</translation>
    </message>
    <message>
        <source>What is in the recording</source>
        <translation>Was in der Aufzeichnung steht</translation>
    </message>
    <message>
        <source>Writes the values and events of this time, of the selected items or of all.</source>
        <translation>Schreibt die Werte und Ereignisse dieser Zeit, der gewählten Elemente oder aller.</translation>
    </message>
    <message>
        <source>nothing is known to be missing</source>
        <translation>es ist nicht bekannt, dass etwas fehlt</translation>
    </message>
</context>
<context>
    <name>QlumRecoveryDialog</name>
    <message>
        <source>&amp;Later</source>
        <translation>S&amp;päter</translation>
    </message>
    <message>
        <source>&amp;Open Project</source>
        <translation>Projekt ö&amp;ffnen</translation>
    </message>
    <message>
        <source>&amp;Save Report...</source>
        <translation>Bericht &amp;speichern...</translation>
    </message>
    <message>
        <source>&amp;Throw Away</source>
        <translation>&amp;Verwerfen</translation>
    </message>
    <message>
        <source>Ended</source>
        <translation>Beendet</translation>
    </message>
    <message>
        <source>New project</source>
        <translation>Neues Projekt</translation>
    </message>
    <message>
        <source>No project was open. The report says where it happened.</source>
        <translation>Es war kein Projekt offen. Der Bericht sagt, wo es geschah.</translation>
    </message>
    <message>
        <source>Project</source>
        <translation>Projekt</translation>
    </message>
    <message>
        <source>Recover Work</source>
        <translation>Arbeit wiederherstellen</translation>
    </message>
    <message>
        <source>Report of a crash</source>
        <translation>Absturzbericht</translation>
    </message>
    <message>
        <source>Report of the crash</source>
        <translation>Bericht über den Absturz</translation>
    </message>
    <message>
        <source>Save Report</source>
        <translation>Bericht speichern</translation>
    </message>
    <message>
        <source>Tavelin did not end as it should have. This is what was left:</source>
        <translation>Tavelin wurde nicht ordnungsgemäß beendet. Das ist übrig geblieben:</translation>
    </message>
    <message>
        <source>Text Files (*.txt)</source>
        <translation>Textdateien (*.txt)</translation>
    </message>
    <message>
        <source>The project had changes that were not saved. They can be opened as they were at most a minute before the end; the project file stays as it is until you save.</source>
        <translation>Das Projekt hatte ungespeicherte Änderungen. Sie lassen sich so öffnen, wie sie höchstens eine Minute vor dem Ende waren; die Projektdatei bleibt, wie sie ist, bis Sie speichern.</translation>
    </message>
    <message>
        <source>The project had no changes that were not saved. The report says where it happened.</source>
        <translation>Das Projekt hatte keine ungespeicherten Änderungen. Der Bericht sagt, wo es geschah.</translation>
    </message>
    <message>
        <source>The report could not be written: %1</source>
        <translation>Der Bericht konnte nicht geschrieben werden: %1</translation>
    </message>
    <message>
        <source>The unsaved changes cannot be brought back then. Throw them away?</source>
        <translation>Die ungespeicherten Änderungen können danach nicht zurückgeholt werden. Verwerfen?</translation>
    </message>
    <message>
        <source>Throw Away</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Unsaved changes</source>
        <translation>Ungespeicherte Änderungen</translation>
    </message>
    <message>
        <source>Unsaved changes, report of a crash</source>
        <translation>Ungespeicherte Änderungen, Absturzbericht</translation>
    </message>
    <message>
        <source>What is there</source>
        <translation>Was da ist</translation>
    </message>
    <message>
        <source>What was left</source>
        <translation>Was übrig geblieben ist</translation>
    </message>
</context>
<context>
    <name>QlumReferenceModel</name>
    <message>
        <source>%1: a node of another server</source>
        <translation>%1: ein Knoten eines anderen Servers</translation>
    </message>
    <message>
        <source>Browse Name</source>
        <translation>BrowseName</translation>
    </message>
    <message>
        <source>Class</source>
        <translation>Klasse</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>Richtung</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Vorwärts</translation>
    </message>
    <message>
        <source>Inverse</source>
        <translation>Rückwärts</translation>
    </message>
    <message>
        <source>Node Id</source>
        <translation>NodeId</translation>
    </message>
    <message>
        <source>Reference</source>
        <translation>Referenz</translation>
    </message>
    <message>
        <source>Target</source>
        <translation>Ziel</translation>
    </message>
    <message>
        <source>Type Definition</source>
        <translation>Typdefinition</translation>
    </message>
</context>
<context>
    <name>QlumReferencePlugin</name>
    <message>
        <source>%1 cannot be shown in the address space window.</source>
        <translation>%1 kann im Adressraumfenster nicht gezeigt werden.</translation>
    </message>
    <message>
        <source>%1 has no references of this kind.</source>
        <translation>%1 hat keine Referenzen dieser Art.</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>&lt;b&gt;References&lt;/b&gt;&lt;br&gt;This window shows the references of the node that is selected in the address space window.</source>
        <translation>&lt;b&gt;Referenzen&lt;/b&gt;&lt;br&gt;Dieses Fenster zeigt die Referenzen des Knotens, der im Adressraumfenster gewählt ist.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Refresh&lt;/b&gt;&lt;br&gt;Read the references again</source>
        <translation>&lt;b&gt;Auffrischen&lt;/b&gt;&lt;br&gt;Die Referenzen erneut lesen</translation>
    </message>
    <message>
        <source>Browse of node &apos;%1&apos; failed [ret = %2].</source>
        <translation>Durchsuchen von Knoten „%1“ fehlgeschlagen [ret = %2].</translation>
    </message>
    <message>
        <source>It is a node of another server.</source>
        <translation>Das ist ein Knoten eines anderen Servers.</translation>
    </message>
    <message>
        <source>No hierarchical reference leads there; its references are shown here.</source>
        <translation>Keine hierarchische Referenz führt dorthin; seine Referenzen werden hier gezeigt.</translation>
    </message>
    <message>
        <source>Read the references again</source>
        <translation>Die Referenzen erneut lesen</translation>
    </message>
    <message>
        <source>Reading reference types</source>
        <translation>Referenztypen lesen</translation>
    </message>
    <message>
        <source>Reading references</source>
        <translation>Referenzen lesen</translation>
    </message>
    <message>
        <source>Reference Plugin</source>
        <translation>Plugin Referenzen</translation>
    </message>
    <message>
        <source>References</source>
        <translation>Referenzen</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Auffrischen</translation>
    </message>
    <message>
        <source>Select a node in the address space window.</source>
        <translation>Wählen Sie einen Knoten im Adressraumfenster.</translation>
    </message>
    <message>
        <source>The list of references of %1 is incomplete.</source>
        <translation>Die Liste der Referenzen von %1 ist unvollständig.</translation>
    </message>
    <message>
        <source>The reading failed; the log says more.</source>
        <translation>Das Lesen ist fehlgeschlagen; mehr steht im Protokoll.</translation>
    </message>
    <message>
        <source>The reading was cancelled.</source>
        <translation>Das Lesen wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The references of %1 are being read...</source>
        <translation>Die Referenzen von %1 werden gelesen...</translation>
    </message>
    <message>
        <source>The references of %1 are read when its server is connected.</source>
        <translation>Die Referenzen von %1 werden gelesen, sobald sein Server verbunden ist.</translation>
    </message>
    <message>
        <source>The references of %1 could not be read.</source>
        <translation>Die Referenzen von %1 konnten nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Try &amp;Again</source>
        <translation>&amp;Erneut versuchen</translation>
    </message>
    <message>
        <source>reading...</source>
        <translation>wird gelesen...</translation>
    </message>
</context>
<context>
    <name>QlumReferenceView</name>
    <message>
        <source>%1 references; there are more.</source>
        <translation>%1 Referenzen; es gibt mehr.</translation>
    </message>
    <message>
        <source>&amp;Go to Target</source>
        <translation>&amp;Gehe zum Ziel</translation>
    </message>
    <message>
        <source>&amp;More</source>
        <translation>&amp;Mehr</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy Node Id&lt;/b&gt;&lt;br&gt;Copies the node ids of the selected targets.</source>
        <translation>&lt;b&gt;NodeId kopieren&lt;/b&gt;&lt;br&gt;Kopiert die NodeIds der gewählten Ziele.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Direction&lt;/b&gt;&lt;br&gt;Forward references begin at the node, inverse ones end there.</source>
        <translation>&lt;b&gt;Richtung&lt;/b&gt;&lt;br&gt;Vorwärtsreferenzen beginnen am Knoten, rückwärtige enden dort.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Go to Target&lt;/b&gt;&lt;br&gt;Selects the target of the reference in the address space window, so that its own references are shown here.</source>
        <translation>&lt;b&gt;Gehe zum Ziel&lt;/b&gt;&lt;br&gt;Wählt das Ziel der Referenz im Adressraumfenster, sodass hier dessen eigene Referenzen gezeigt werden.</translation>
    </message>
    <message>
        <source>&lt;b&gt;More&lt;/b&gt;&lt;br&gt;Reads the next references of the node from the server.</source>
        <translation>&lt;b&gt;Mehr&lt;/b&gt;&lt;br&gt;Liest die nächsten Referenzen des Knotens vom Server.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Reference Type&lt;/b&gt;&lt;br&gt;Shows references of this type only.</source>
        <translation>&lt;b&gt;Referenztyp&lt;/b&gt;&lt;br&gt;Zeigt nur Referenzen dieses Typs.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Subtypes&lt;/b&gt;&lt;br&gt;Shows references of the types that derive from it, too.</source>
        <translation>&lt;b&gt;Untertypen&lt;/b&gt;&lt;br&gt;Zeigt auch Referenzen der davon abgeleiteten Typen.</translation>
    </message>
    <message>
        <source>All References</source>
        <translation>Alle Referenzen</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>Beide</translation>
    </message>
    <message>
        <source>Copy Node &amp;Id</source>
        <translation>Node&amp;Id kopieren</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>Richtung</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Vorwärts</translation>
    </message>
    <message>
        <source>Hierarchical References</source>
        <translation>Hierarchische Referenzen</translation>
    </message>
    <message>
        <source>Inverse</source>
        <translation>Rückwärts</translation>
    </message>
    <message>
        <source>More references</source>
        <translation>Mehr Referenzen</translation>
    </message>
    <message>
        <source>No reference holds this text.</source>
        <translation>Keine Referenz enthält diesen Text.</translation>
    </message>
    <message>
        <source>Other References</source>
        <translation>Andere Referenzen</translation>
    </message>
    <message>
        <source>Read the next references</source>
        <translation>Die nächsten Referenzen lesen</translation>
    </message>
    <message>
        <source>Reference type</source>
        <translation>Referenztyp</translation>
    </message>
    <message>
        <source>References</source>
        <translation>Referenzen</translation>
    </message>
    <message>
        <source>References of derived types, too</source>
        <translation>Auch Referenzen abgeleiteter Typen</translation>
    </message>
    <message>
        <source>Select the target of the reference in the address space window</source>
        <translation>Das Ziel der Referenz im Adressraumfenster wählen</translation>
    </message>
    <message>
        <source>Show references that hold this text</source>
        <translation>Referenzen zeigen, die diesen Text enthalten</translation>
    </message>
    <message>
        <source>Subt&amp;ypes</source>
        <translation>Untert&amp;ypen</translation>
    </message>
    <message>
        <source>Subtypes</source>
        <translation>Untertypen</translation>
    </message>
    <message>
        <source>Text to filter the references by</source>
        <translation>Text, nach dem die Referenzen gefiltert werden</translation>
    </message>
    <message>
        <source>references</source>
        <translation>Referenzen</translation>
    </message>
</context>
<context>
    <name>QlumRoleMarks</name>
    <message>
        <source> %1: %2 </source>
        <translation> %1: %2 </translation>
    </message>
    <message>
        <source>May send: %1</source>
        <translation>Darf senden: %1</translation>
    </message>
    <message>
        <source>Role of the server</source>
        <translation>Rolle des Servers</translation>
    </message>
</context>
<context>
    <name>QlumRunComparisonModel</name>
    <message>
        <source>%1: 95 % of the calls at most</source>
        <translation>%1: 95 % der Aufrufe höchstens</translation>
    </message>
    <message>
        <source>%1: 99 % of the calls at most</source>
        <translation>%1: 99 % der Aufrufe höchstens</translation>
    </message>
    <message>
        <source>%1: maximum</source>
        <translation>%1: Maximum</translation>
    </message>
    <message>
        <source>%1: mean</source>
        <translation>%1: Mittel</translation>
    </message>
    <message>
        <source>%1: median</source>
        <translation>%1: Median</translation>
    </message>
    <message>
        <source>%1: minimum</source>
        <translation>%1: Minimum</translation>
    </message>
    <message>
        <source>%1: standard deviation</source>
        <translation>%1: Standardabweichung</translation>
    </message>
    <message>
        <source>Bytes received</source>
        <translation>Empfangene Bytes</translation>
    </message>
    <message>
        <source>Bytes sent</source>
        <translation>Gesendete Bytes</translation>
    </message>
    <message>
        <source>Calls</source>
        <translation>Aufrufe</translation>
    </message>
    <message>
        <source>Calls a second</source>
        <translation>Aufrufe pro Sekunde</translation>
    </message>
    <message>
        <source>Client&apos;s share (encode, decode): median</source>
        <translation>Anteil des Clients (Kodieren, Dekodieren): Median</translation>
    </message>
    <message>
        <source>Compared With</source>
        <translation>Verglichen mit</translation>
    </message>
    <message>
        <source>Difference</source>
        <translation>Unterschied</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>Dauer</translation>
    </message>
    <message>
        <source>Failed with %1</source>
        <translation>Fehlgeschlagen mit %1</translation>
    </message>
    <message>
        <source>Figure</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Network and server: median</source>
        <translation>Netz und Server: Median</translation>
    </message>
    <message>
        <source>Ratio</source>
        <translation>Verhältnis</translation>
    </message>
    <message>
        <source>Since the server&apos;s time stamp</source>
        <translation>Seit dem Zeitstempel des Servers</translation>
    </message>
    <message>
        <source>Since the source&apos;s time stamp</source>
        <translation>Seit dem Zeitstempel der Quelle</translation>
    </message>
    <message>
        <source>This Run</source>
        <translation>Dieser Lauf</translation>
    </message>
    <message>
        <source>Time in all</source>
        <translation>Zeit insgesamt</translation>
    </message>
    <message>
        <source>Values a second</source>
        <translation>Werte pro Sekunde</translation>
    </message>
</context>
<context>
    <name>QlumRunModel</name>
    <message>
        <source>95 % [us]</source>
        <translation>95 % [us]</translation>
    </message>
    <message>
        <source>99 % [us]</source>
        <translation>99 % [us]</translation>
    </message>
    <message>
        <source>Begun</source>
        <translation>Begonnen</translation>
    </message>
    <message>
        <source>Bytes In/Call</source>
        <translation>Bytes ein/Aufruf</translation>
    </message>
    <message>
        <source>Bytes Out/Call</source>
        <translation>Bytes aus/Aufruf</translation>
    </message>
    <message>
        <source>Calls</source>
        <translation>Aufrufe</translation>
    </message>
    <message>
        <source>Calls/s</source>
        <translation>Aufrufe/s</translation>
    </message>
    <message>
        <source>Client&apos;s Share [us]</source>
        <translation>Anteil Client [us]</translation>
    </message>
    <message>
        <source>Deviation [us]</source>
        <translation>Abweichung [us]</translation>
    </message>
    <message>
        <source>Endpoint</source>
        <translation>Endpunkt</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Fehlgeschlagen</translation>
    </message>
    <message>
        <source>Maximum [us]</source>
        <translation>Maximum [us]</translation>
    </message>
    <message>
        <source>Mean [us]</source>
        <translation>Mittel [us]</translation>
    </message>
    <message>
        <source>Measured</source>
        <translation>Gemessen</translation>
    </message>
    <message>
        <source>Median [us]</source>
        <translation>Median [us]</translation>
    </message>
    <message>
        <source>Minimum [us]</source>
        <translation>Minimum [us]</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Nodes a Call</source>
        <translation>Knoten je Aufruf</translation>
    </message>
    <message>
        <source>Outstanding</source>
        <translation>Gleichzeitig</translation>
    </message>
    <message>
        <source>Remarks</source>
        <translation>Bemerkungen</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Values/s</source>
        <translation>Werte/s</translation>
    </message>
</context>
<context>
    <name>QlumSecretFields</name>
    <message numerus="yes">
        <source>(%n byte(s))</source>
        <translation>
            <numerusform>(%n Byte)</numerusform>
            <numerusform>(%n Bytes)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumServerCommands</name>
    <message>
        <source>&apos;%1&apos; is connected. Disconnect it and remove it from the project?</source>
        <translation>„%1“ ist verbunden. Trennen und aus dem Projekt entfernen?</translation>
    </message>
    <message>
        <source>Reconnect Server Now</source>
        <translation>Server jetzt wieder verbinden</translation>
    </message>
    <message>
        <source>Remove Server</source>
        <translation>Server entfernen</translation>
    </message>
</context>
<context>
    <name>QlumServerCrawl</name>
    <message>
        <source>%1 nodes were found by %2 calls.</source>
        <translation>%1 Knoten wurden mit %2 Aufrufen gefunden.</translation>
    </message>
    <message>
        <source>Find Node</source>
        <translation>Knoten suchen</translation>
    </message>
    <message>
        <source>Finding the nodes below %1</source>
        <translation>Die Knoten unter %1 suchen</translation>
    </message>
    <message>
        <source>What is below a node is not known: %1</source>
        <translation>Was unter einem Knoten ist, ist nicht bekannt: %1</translation>
    </message>
</context>
<context>
    <name>QlumServerDiagnosticPlugin</name>
    <message>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <source>&amp;Forgotten sessions after:</source>
        <translation>&amp;Vergessene Sitzungen nach:</translation>
    </message>
    <message>
        <source>A session of this application that has had no contact with its server for so long is pointed out as forgotten.</source>
        <translation>Eine Sitzung dieser Anwendung, die so lange keinen Kontakt zu ihrem Server hatte, wird als vergessen hervorgehoben.</translation>
    </message>
    <message>
        <source>Server &amp;Diagnostics</source>
        <translation>Server&amp;diagnose</translation>
    </message>
    <message>
        <source>Shows what a server tells of itself: its status and limits, who is connected, what each session and subscription does, and its endpoints.</source>
        <translation>Zeigt, was ein Server über sich sagt: seinen Status und seine Grenzen, wer verbunden ist, was jede Sitzung und Subscription tut, und seine Endpunkte.</translation>
    </message>
</context>
<context>
    <name>QlumServerDiagnosticWidget</name>
    <message>
        <source>%1 elements</source>
        <translation>%1 Elemente</translation>
    </message>
    <message>
        <source>%1 is to count no longer.</source>
        <translation>%1 soll nicht mehr zählen.</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 sessions of this application have had no contact for %2 s or more: they look forgotten, and go when their time-out is over.</source>
        <translation>%1 Sitzungen dieser Anwendung hatten seit %2 s oder länger keinen Kontakt: Sie wirken vergessen und verschwinden, wenn ihr Zeitlimit abgelaufen ist.</translation>
    </message>
    <message numerus="yes">
        <source>%n bytes: %1%2</source>
        <translation>
            <numerusform>%n Byte: %1%2</numerusform>
            <numerusform>%n Bytes: %1%2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n elements of the server&apos;s list of secured sessions are something else.</source>
        <translation>
            <numerusform>%n Element der Liste gesicherter Sitzungen des Servers ist etwas anderes.</numerusform>
            <numerusform>%n Elemente der Liste gesicherter Sitzungen des Servers sind etwas anderes.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n elements of the server&apos;s list of sessions are something else.</source>
        <translation>
            <numerusform>%n Element der Sitzungsliste des Servers ist etwas anderes.</numerusform>
            <numerusform>%n Elemente der Sitzungsliste des Servers sind etwas anderes.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Copy Report</source>
        <translation>Bericht &amp;kopieren</translation>
    </message>
    <message>
        <source>&amp;Disable Diagnostics</source>
        <translation>Diagnose &amp;ausschalten</translation>
    </message>
    <message>
        <source>&amp;Keep This Server</source>
        <translation>&amp;Festhalten</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>Auf&amp;frischen</translation>
    </message>
    <message>
        <source>&amp;Save Report...</source>
        <translation>Bericht &amp;speichern...</translation>
    </message>
    <message>
        <source>1 element</source>
        <translation>1 Element</translation>
    </message>
    <message>
        <source>&lt;b&gt;Copy Report&lt;/b&gt;&lt;br&gt;Copies everything that the view shows, of all pages, as text.</source>
        <translation>&lt;b&gt;Bericht kopieren&lt;/b&gt;&lt;br&gt;Kopiert alles, was die Ansicht zeigt, von allen Seiten, als Text.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Current Server&lt;/b&gt;&lt;br&gt;The server that is shown: the one that is selected in the project, or another one, to which the view then keeps.</source>
        <translation>&lt;b&gt;Aktueller Server&lt;/b&gt;&lt;br&gt;Der gezeigte Server: der im Projekt gewählte oder ein anderer, bei dem die Ansicht dann bleibt.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Keep This Server&lt;/b&gt;&lt;br&gt;Shows this server whichever is selected in the project, so that a second view can show another one beside it.</source>
        <translation>&lt;b&gt;Festhalten&lt;/b&gt;&lt;br&gt;Zeigt diesen Server, welcher auch im Projekt gewählt ist, sodass eine zweite Ansicht daneben einen anderen zeigen kann.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Refresh Every&lt;/b&gt;&lt;br&gt;Reads the page that is shown again and again. Lists of sessions and subscriptions follow their counts in any case.</source>
        <translation>&lt;b&gt;Auffrischen alle&lt;/b&gt;&lt;br&gt;Liest die gezeigte Seite immer wieder. Die Listen der Sitzungen und Subscriptions folgen in jedem Fall ihren Anzahlen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Refresh&lt;/b&gt;&lt;br&gt;Reads everything that the view shows from the server again.</source>
        <translation>&lt;b&gt;Auffrischen&lt;/b&gt;&lt;br&gt;Liest alles, was die Ansicht zeigt, erneut vom Server.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Save Report&lt;/b&gt;&lt;br&gt;Writes everything that the view shows, of all pages, to a text file.</source>
        <translation>&lt;b&gt;Bericht speichern&lt;/b&gt;&lt;br&gt;Schreibt alles, was die Ansicht zeigt, von allen Seiten, in eine Textdatei.</translation>
    </message>
    <message>
        <source>A session of this application has had no contact for %1 s or more: it looks forgotten, and goes when its time-out is over.</source>
        <translation>Eine Sitzung dieser Anwendung hatte seit %1 s oder länger keinen Kontakt: Sie wirkt vergessen und verschwindet, wenn ihr Zeitlimit abgelaufen ist.</translation>
    </message>
    <message>
        <source>Asking for servers and endpoints</source>
        <translation>Nach Servern und Endpunkten fragen</translation>
    </message>
    <message>
        <source>Cannot be displayed</source>
        <translation>Kann nicht angezeigt werden</translation>
    </message>
    <message>
        <source>Connect &amp;Encrypted</source>
        <translation>&amp;Verschlüsselt verbinden</translation>
    </message>
    <message>
        <source>Copy everything that the view shows as text</source>
        <translation>Alles, was die Ansicht zeigt, als Text kopieren</translation>
    </message>
    <message>
        <source>CreateMonitoredItems failed with error &apos;%1&apos;</source>
        <translation>CreateMonitoredItems ist mit dem Fehler „%1“ fehlgeschlagen</translation>
    </message>
    <message>
        <source>CreateSubscription failed with error %1.</source>
        <translation>CreateSubscription ist mit dem Fehler %1 fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Current Server:</source>
        <translation>Aktueller Server:</translation>
    </message>
    <message>
        <source>Diagnostics of the session</source>
        <translation>Diagnose der Sitzung</translation>
    </message>
    <message>
        <source>Disabling server diagnostics</source>
        <translation>Serverdiagnose ausschalten</translation>
    </message>
    <message>
        <source>Enabling server diagnostics</source>
        <translation>Serverdiagnose einschalten</translation>
    </message>
    <message>
        <source>Ending server diagnostics</source>
        <translation>Serverdiagnose beenden</translation>
    </message>
    <message>
        <source>Endpoints</source>
        <translation>Endpunkte</translation>
    </message>
    <message>
        <source>How sessions are secured could not be read: %1. Servers often tell it over encrypted connections, and to administrators only.</source>
        <translation>Wie Sitzungen gesichert sind, konnte nicht gelesen werden: %1. Server sagen es oft nur über verschlüsselte Verbindungen und nur Administratoren.</translation>
    </message>
    <message>
        <source>It counts nothing, and need not tell of its sessions and subscriptions.</source>
        <translation>Er zählt nichts und muss seine Sitzungen und Subscriptions nicht nennen.</translation>
    </message>
    <message>
        <source>Its counts cannot be watched: %1. Set an interval, or refresh the lists.</source>
        <translation>Seine Anzahlen können nicht überwacht werden: %1. Stellen Sie ein Intervall ein, oder frischen Sie die Listen auf.</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>k. A.</translation>
    </message>
    <message>
        <source>Node could not be read (%1)</source>
        <translation>Knoten konnte nicht gelesen werden (%1)</translation>
    </message>
    <message>
        <source>Node does not exist</source>
        <translation>Knoten existiert nicht</translation>
    </message>
    <message>
        <source>Parameter</source>
        <translation>Parameter</translation>
    </message>
    <message>
        <source>Per Second</source>
        <translation>Pro Sekunde</translation>
    </message>
    <message>
        <source>Read everything from the server again</source>
        <translation>Alles erneut vom Server lesen</translation>
    </message>
    <message>
        <source>Reading server diagnostics</source>
        <translation>Serverdiagnose lesen</translation>
    </message>
    <message>
        <source>Reading the diagnostics of a session</source>
        <translation>Die Diagnose einer Sitzung lesen</translation>
    </message>
    <message>
        <source>Reading the diagnostics of a subscription</source>
        <translation>Die Diagnose einer Subscription lesen</translation>
    </message>
    <message>
        <source>Reading the sessions of a server</source>
        <translation>Die Sitzungen eines Servers lesen</translation>
    </message>
    <message>
        <source>Reading the subscriptions of a server</source>
        <translation>Die Subscriptions eines Servers lesen</translation>
    </message>
    <message>
        <source>Refresh &amp;every:</source>
        <translation>Auffrischen &amp;alle:</translation>
    </message>
    <message>
        <source>Refresh Session List</source>
        <translation>Sitzungsliste auffrischen</translation>
    </message>
    <message>
        <source>Refresh Subscription List</source>
        <translation>Subscription-Liste auffrischen</translation>
    </message>
    <message>
        <source>Save Report</source>
        <translation>Bericht speichern</translation>
    </message>
    <message>
        <source>Select Session:</source>
        <translation>Sitzung wählen:</translation>
    </message>
    <message>
        <source>Select Subscription:</source>
        <translation>Subscription wählen:</translation>
    </message>
    <message>
        <source>Select a server in the project to see what it tells of itself.</source>
        <translation>Wählen Sie im Projekt einen Server, um zu sehen, was er über sich sagt.</translation>
    </message>
    <message>
        <source>Server Diagnostics View</source>
        <translation>Serverdiagnose</translation>
    </message>
    <message>
        <source>Server Information</source>
        <translation>Serverinformationen</translation>
    </message>
    <message>
        <source>Server diagnostics</source>
        <translation>Serverdiagnose</translation>
    </message>
    <message>
        <source>Server diagnostics of %1</source>
        <translation>Serverdiagnose von %1</translation>
    </message>
    <message>
        <source>ServerDiagnostic Plugin</source>
        <translation>Plugin Serverdiagnose</translation>
    </message>
    <message>
        <source>Session Diagnostics</source>
        <translation>Sitzungsdiagnose</translation>
    </message>
    <message>
        <source>Session Diagnostics: %1</source>
        <translation>Sitzungsdiagnose: %1</translation>
    </message>
    <message>
        <source>Session Security Diagnostics</source>
        <translation>Sicherheitsdiagnose der Sitzung</translation>
    </message>
    <message>
        <source>Sessions</source>
        <translation>Sitzungen</translation>
    </message>
    <message>
        <source>Show this server whichever is selected in the project</source>
        <translation>Diesen Server zeigen, welcher auch im Projekt gewählt ist</translation>
    </message>
    <message>
        <source>Subscribing to the counts of sessions and subscriptions</source>
        <translation>Die Anzahlen der Sitzungen und Subscriptions abonnieren</translation>
    </message>
    <message>
        <source>Subscription Diagnostics</source>
        <translation>Subscription-Diagnose</translation>
    </message>
    <message>
        <source>Subscription Diagnostics: %1</source>
        <translation>Subscription-Diagnose: %1</translation>
    </message>
    <message>
        <source>Subscriptions</source>
        <translation>Subscriptions</translation>
    </message>
    <message>
        <source>Texts (*.txt);;All files (*)</source>
        <translation>Texte (*.txt);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>That goes for all its clients: its counters and lists may go.</source>
        <translation>Das gilt für alle seine Clients: Seine Zähler und Listen können verschwinden.</translation>
    </message>
    <message>
        <source>The counts are no longer live: %1.</source>
        <translation>Die Zähler folgen dem Server nicht mehr: %1.</translation>
    </message>
    <message>
        <source>The counts are not live for the moment: %1. They are watched again in %2 s.</source>
        <translation>Die Zähler folgen dem Server im Moment nicht: %1. In %2 s werden sie wieder überwacht.</translation>
    </message>
    <message>
        <source>The counts are not live: %1.</source>
        <translation>Die Zähler folgen dem Server nicht: %1.</translation>
    </message>
    <message>
        <source>The diagnostics of %1 are disabled.</source>
        <translation>Die Diagnose von %1 ist ausgeschaltet.</translation>
    </message>
    <message>
        <source>The diagnostics of %1 could not be disabled.</source>
        <translation>Die Diagnose von %1 konnte nicht ausgeschaltet werden.</translation>
    </message>
    <message>
        <source>The diagnostics of %1 could not be enabled.</source>
        <translation>Die Diagnose von %1 konnte nicht eingeschaltet werden.</translation>
    </message>
    <message>
        <source>The lists do not follow the server by themselves.</source>
        <translation>Die Listen folgen dem Server nicht von selbst.</translation>
    </message>
    <message>
        <source>The report was not written to &apos;%1&apos;.</source>
        <translation>Der Bericht wurde nicht nach „%1“ geschrieben.</translation>
    </message>
    <message>
        <source>The server has ended subscription %1: %2.</source>
        <translation>Der Server hat Subscription %1 beendet: %2.</translation>
    </message>
    <message>
        <source>The server tells of no session.</source>
        <translation>Der Server nennt keine Sitzung.</translation>
    </message>
    <message>
        <source>The server tells of no subscription.</source>
        <translation>Der Server nennt keine Subscription.</translation>
    </message>
    <message>
        <source>The server&apos;s list of sessions could not be read: %1</source>
        <translation>Die Sitzungsliste des Servers konnte nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>The server&apos;s list of subscriptions could not be read: %1</source>
        <translation>Die Subscription-Liste des Servers konnte nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>The server&apos;s list of subscriptions holds something else.</source>
        <translation>Die Subscription-Liste des Servers enthält etwas anderes.</translation>
    </message>
    <message>
        <source>The session that was shown has ended.</source>
        <translation>Die gezeigte Sitzung ist zu Ende.</translation>
    </message>
    <message>
        <source>The sessions could not be read: %1</source>
        <translation>Die Sitzungen konnten nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>The sessions of %1 could not be read.</source>
        <translation>Die Sitzungen von %1 konnten nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The sessions of a connected server appear here.</source>
        <translation>Hier erscheinen die Sitzungen eines verbundenen Servers.</translation>
    </message>
    <message>
        <source>The subscription that was shown has ended.</source>
        <translation>Die gezeigte Subscription ist zu Ende.</translation>
    </message>
    <message>
        <source>The subscriptions could not be read: %1</source>
        <translation>Die Subscriptions konnten nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>The subscriptions of %1 could not be read.</source>
        <translation>Die Subscriptions von %1 konnten nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The subscriptions of a connected server appear here.</source>
        <translation>Hier erscheinen die Subscriptions eines verbundenen Servers.</translation>
    </message>
    <message>
        <source>The values of %1 could not be read.</source>
        <translation>Die Werte von %1 konnten nicht gelesen werden.</translation>
    </message>
    <message>
        <source>There is no connection to %1. Connect it to see what it tells of itself.</source>
        <translation>Es gibt keine Verbindung zu %1. Verbinden Sie ihn, um zu sehen, was er über sich sagt.</translation>
    </message>
    <message>
        <source>There is no connection to %1. What is shown is from before.</source>
        <translation>Es gibt keine Verbindung zu %1. Das Gezeigte ist von vorher.</translation>
    </message>
    <message>
        <source>Total %1 / Error %2</source>
        <translation>Gesamt %1 / Fehler %2</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Write everything that the view shows to a file</source>
        <translation>Alles, was die Ansicht zeigt, in eine Datei schreiben</translation>
    </message>
    <message>
        <source>Written %1</source>
        <translation>Geschrieben %1</translation>
    </message>
    <message>
        <source>never</source>
        <translation>nie</translation>
    </message>
    <message>
        <source>no other subscription could be made, %1</source>
        <translation>eine andere Subscription ließ sich nicht anlegen, %1</translation>
    </message>
    <message>
        <source>reading...</source>
        <translation>wird gelesen...</translation>
    </message>
    <message>
        <source>the server ended their subscription, %1</source>
        <translation>der Server hat ihre Subscription beendet, %1</translation>
    </message>
</context>
<context>
    <name>QlumServerMessages</name>
    <message>
        <source>Connect Error</source>
        <translation>Verbindungsfehler</translation>
    </message>
    <message>
        <source>Reconnecting to server &apos;%1&apos; was refused: error &apos;%2&apos; was returned during %3.
Disconnect and connect again to decide about it.</source>
        <translation>Wiederverbinden mit Server „%1“ wurde abgelehnt: Bei %3 wurde der Fehler „%2“ gemeldet.
Trennen und verbinden Sie erneut, um darüber zu entscheiden.</translation>
    </message>
</context>
<context>
    <name>QlumServerPage</name>
    <message>
        <source>&amp;Get Endpoints</source>
        <translation>Endpunkte &amp;holen</translation>
    </message>
    <message>
        <source>&amp;URL:</source>
        <translation>&amp;URL:</translation>
    </message>
    <message>
        <source>&lt;b&gt;Endpoint URL&lt;/b&gt;&lt;br&gt;The address of the server, for example opc.tcp://plc1:4840. Port 4840 is used when none is given.</source>
        <translation>&lt;b&gt;Endpunkt-URL&lt;/b&gt;&lt;br&gt;Die Adresse des Servers, zum Beispiel opc.tcp://plc1:4840. Ohne Angabe wird Port 4840 verwendet.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Endpoints&lt;/b&gt;&lt;br&gt;What the server offers. Choose how the connection is to be secured.</source>
        <translation>&lt;b&gt;Endpunkte&lt;/b&gt;&lt;br&gt;Was der Server anbietet. Wählen Sie, wie die Verbindung gesichert werden soll.</translation>
    </message>
    <message>
        <source>A URL begins with opc.tcp:// or https:// and names a host.</source>
        <translation>Eine URL beginnt mit opc.tcp:// oder https:// und nennt einen Host.</translation>
    </message>
    <message>
        <source>Ask the server which endpoints it offers</source>
        <translation>Den Server fragen, welche Endpunkte er anbietet</translation>
    </message>
    <message>
        <source>Asking the server for its endpoints...</source>
        <translation>Der Server wird nach seinen Endpunkten gefragt...</translation>
    </message>
    <message>
        <source>Ca&amp;ncel</source>
        <translation>Abbre&amp;chen</translation>
    </message>
    <message>
        <source>Cancelled.</source>
        <translation>Abgebrochen.</translation>
    </message>
    <message>
        <source>Endpoint URL</source>
        <translation>Endpunkt-URL</translation>
    </message>
    <message>
        <source>Endpoints</source>
        <translation>Endpunkte</translation>
    </message>
    <message>
        <source>Enter an address and press Get Endpoints.</source>
        <translation>Geben Sie eine Adresse ein und drücken Sie „Endpunkte holen“.</translation>
    </message>
    <message>
        <source>It names the host %1; %2, where it has answered, is dialled: see the page Advanced.</source>
        <translation>Er nennt den Host %1; angewählt wird %2, wo er geantwortet hat: siehe Seite „Erweitert“.</translation>
    </message>
    <message>
        <source>Press a server above, or enter the URL of a server and press Get Endpoints.</source>
        <translation>Klicken Sie oben auf einen Server, oder geben Sie die URL eines Servers ein und drücken Sie „Endpunkte holen“.</translation>
    </message>
    <message>
        <source>Server Settings</source>
        <translation>Servereinstellungen</translation>
    </message>
    <message>
        <source>The endpoints of &apos;%1&apos; could not be read: %2. Check the URL, the network and whether the server runs.</source>
        <translation>Die Endpunkte von „%1“ konnten nicht gelesen werden: %2. Prüfen Sie URL und Netz und ob der Server läuft.</translation>
    </message>
    <message numerus="yes">
        <source>The server offers %n endpoint(s).</source>
        <translation>
            <numerusform>Der Server bietet %n Endpunkt an.</numerusform>
            <numerusform>Der Server bietet %n Endpunkte an.</numerusform>
        </translation>
    </message>
    <message>
        <source>The server offers no endpoint that is supported here.</source>
        <translation>Der Server bietet keinen Endpunkt an, der hier unterstützt wird.</translation>
    </message>
    <message>
        <source>The server offers no endpoint.</source>
        <translation>Der Server bietet keinen Endpunkt an.</translation>
    </message>
    <message>
        <source>endpoints</source>
        <translation>Endpunkte</translation>
    </message>
</context>
<context>
    <name>QlumServerRole</name>
    <message>
        <source>Commission</source>
        <translation>Inbetriebnehmen</translation>
    </message>
    <message>
        <source>Everything may be sent: also changes of attributes, history, nodes, files and the server&apos;s configuration.</source>
        <translation>Alles darf gesendet werden: auch Änderungen an Attributen, Historie, Knoten, Dateien und der Konfiguration des Servers.</translation>
    </message>
    <message>
        <source>Look</source>
        <translation>Ansehen</translation>
    </message>
    <message>
        <source>Only what changes nothing is sent: reading, browsing, watching values and events.</source>
        <translation>Nur was nichts ändert, wird gesendet: Lesen, Durchsuchen, Überwachen von Werten und Ereignissen.</translation>
    </message>
    <message>
        <source>Operate</source>
        <translation>Bedienen</translation>
    </message>
    <message>
        <source>Values may be written and methods called, too. History, nodes and the server&apos;s configuration stay as they are.</source>
        <translation>Auch Werte dürfen geschrieben und Methoden aufgerufen werden. Historie, Knoten und die Konfiguration des Servers bleiben, wie sie sind.</translation>
    </message>
</context>
<context>
    <name>QlumServerSettingsDialog</name>
    <message>
        <source>&amp;Display name:</source>
        <translation>Anzeige&amp;name:</translation>
    </message>
    <message>
        <source>&amp;Test Connection</source>
        <translation>Verbindung &amp;testen</translation>
    </message>
    <message>
        <source>&lt;b&gt;Role&lt;/b&gt;&lt;br&gt;What may be sent to the server. Look: only what changes nothing. Operate: writing values and calling methods, too. Commission: everything.</source>
        <translation>&lt;b&gt;Rolle&lt;/b&gt;&lt;br&gt;Was an den Server gesendet werden darf. Ansehen: nur, was nichts ändert. Bedienen: auch Werte schreiben und Methoden aufrufen. Inbetriebnehmen: alles.</translation>
    </message>
    <message>
        <source>Ad&amp;vanced</source>
        <translation>Er&amp;weitert</translation>
    </message>
    <message>
        <source>Add Server</source>
        <translation>Server hinzufügen</translation>
    </message>
    <message>
        <source>Cancel &amp;Test</source>
        <translation>&amp;Test abbrechen</translation>
    </message>
    <message>
        <source>Connect with these settings, and disconnect again</source>
        <translation>Mit diesen Einstellungen verbinden und wieder trennen</translation>
    </message>
    <message>
        <source>Name of the server in the project window</source>
        <translation>Name des Servers im Projektfenster</translation>
    </message>
    <message>
        <source>Ro&amp;le:</source>
        <translation>Ro&amp;lle:</translation>
    </message>
    <message>
        <source>S&amp;ession</source>
        <translation>Sitzun&amp;g</translation>
    </message>
    <message>
        <source>Serve&amp;r</source>
        <translation>Se&amp;rver</translation>
    </message>
    <message>
        <source>Server Settings</source>
        <translation>Servereinstellungen</translation>
    </message>
    <message>
        <source>Testing the connection: %1...</source>
        <translation>Verbindung wird getestet: %1...</translation>
    </message>
    <message>
        <source>U&amp;ser</source>
        <translation>&amp;Benutzer</translation>
    </message>
    <message>
        <source>What may be sent to the server</source>
        <translation>Was an den Server gesendet werden darf</translation>
    </message>
</context>
<context>
    <name>QlumServiceDetails</name>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>Encoding the request</source>
        <translation>Anfrage kodieren</translation>
    </message>
    <message>
        <source>Handing it over</source>
        <translation>Übergeben</translation>
    </message>
    <message>
        <source>In all</source>
        <translation>Insgesamt</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Receiving and decoding the response</source>
        <translation>Antwort empfangen und dekodieren</translation>
    </message>
    <message>
        <source>Request</source>
        <translation>Anfrage</translation>
    </message>
    <message>
        <source>Response</source>
        <translation>Antwort</translation>
    </message>
    <message>
        <source>Sending it</source>
        <translation>Senden</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Waiting for the server</source>
        <translation>Warten auf den Server</translation>
    </message>
    <message>
        <source>a fault: see the status</source>
        <translation>ein Fehler: siehe Status</translation>
    </message>
    <message>
        <source>no longer kept, or too large</source>
        <translation>nicht mehr aufbewahrt oder zu groß</translation>
    </message>
    <message>
        <source>none came</source>
        <translation>es kam keine</translation>
    </message>
    <message>
        <source>waiting for it</source>
        <translation>warten darauf</translation>
    </message>
</context>
<context>
    <name>QlumServiceGuard</name>
    <message>
        <source>%1: %2.</source>
        <translation>%1: %2.</translation>
    </message>
    <message>
        <source>Server Node</source>
        <translation>Serverknoten</translation>
    </message>
</context>
<context>
    <name>QlumServicesModel</name>
    <message>
        <source>%1 B</source>
        <translation>%1 B</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>+%1 ms</source>
        <translation>+%1 ms</translation>
    </message>
    <message>
        <source>By</source>
        <translation>Durch</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>Dauer</translation>
    </message>
    <message>
        <source>Request</source>
        <translation>Anfrage</translation>
    </message>
    <message>
        <source>Response</source>
        <translation>Antwort</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Service</source>
        <translation>Dienst</translation>
    </message>
    <message>
        <source>Session</source>
        <translation>Sitzung</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Timeline</source>
        <translation>Zeitverlauf</translation>
    </message>
    <message>
        <source>waiting</source>
        <translation>wartet</translation>
    </message>
</context>
<context>
    <name>QlumServicesView</name>
    <message>
        <source> Not observing</source>
        <translation> Keine Beobachtung</translation>
    </message>
    <message>
        <source> Observing</source>
        <translation> Beobachtung läuft</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>&amp;Clear</source>
        <translation>&amp;Leeren</translation>
    </message>
    <message>
        <source>&amp;Observe</source>
        <translation>&amp;Beobachten</translation>
    </message>
    <message numerus="yes">
        <source>, %n event(s) came too fast</source>
        <translation>
            <numerusform>, %n Ereignis kam zu schnell</numerusform>
            <numerusform>, %n Ereignisse kamen zu schnell</numerusform>
        </translation>
    </message>
    <message>
        <source>&lt;b&gt;Observe Service Calls&lt;/b&gt;&lt;br&gt;Lists every call of every session with its time, sizes and status. Passwords, keys and tokens are left out.</source>
        <translation>&lt;b&gt;Dienstaufrufe beobachten&lt;/b&gt;&lt;br&gt;Führt jeden Aufruf jeder Sitzung mit Zeit, Größen und Status auf. Kennwörter, Schlüssel und Token sind weggelassen.</translation>
    </message>
    <message>
        <source>All servers</source>
        <translation>Alle Server</translation>
    </message>
    <message>
        <source>All services</source>
        <translation>Alle Dienste</translation>
    </message>
    <message>
        <source>All statuses</source>
        <translation>Jeder Status</translation>
    </message>
    <message>
        <source>Any duration</source>
        <translation>Beliebige Dauer</translation>
    </message>
    <message>
        <source>Bad</source>
        <translation>Schlecht</translation>
    </message>
    <message>
        <source>Details of the service call</source>
        <translation>Details des Dienstaufrufs</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Good</source>
        <translation>Gut</translation>
    </message>
    <message>
        <source>Least duration</source>
        <translation>Mindestdauer</translation>
    </message>
    <message>
        <source>No service call is shown. Switch observing on and use a server.</source>
        <translation>Kein Dienstaufruf wird gezeigt. Schalten Sie das Beobachten ein und benutzen Sie einen Server.</translation>
    </message>
    <message>
        <source>Observe the service calls of all sessions</source>
        <translation>Die Dienstaufrufe aller Sitzungen beobachten</translation>
    </message>
    <message>
        <source>Remove all calls from the list</source>
        <translation>Alle Aufrufe aus der Liste entfernen</translation>
    </message>
    <message>
        <source>Select a service call to see its request and response.</source>
        <translation>Wählen Sie einen Dienstaufruf, um Anfrage und Antwort zu sehen.</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Service</source>
        <translation>Dienst</translation>
    </message>
    <message>
        <source>Service calls</source>
        <translation>Dienstaufrufe</translation>
    </message>
    <message>
        <source>Services Toolbar</source>
        <translation>Symbolleiste der Dienste</translation>
    </message>
    <message>
        <source>Show calls of this service</source>
        <translation>Aufrufe dieses Dienstes zeigen</translation>
    </message>
    <message>
        <source>Show calls that came to this</source>
        <translation>Aufrufe mit diesem Ergebnis zeigen</translation>
    </message>
    <message>
        <source>Show calls that hold this text</source>
        <translation>Aufrufe zeigen, die diesen Text enthalten</translation>
    </message>
    <message>
        <source>Show calls that took at least as long</source>
        <translation>Aufrufe zeigen, die mindestens so lange dauerten</translation>
    </message>
    <message>
        <source>Show calls to this server</source>
        <translation>Aufrufe an diesen Server zeigen</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Waiting</source>
        <translation>Wartend</translation>
    </message>
    <message>
        <source>service call</source>
        <translation>Dienstaufruf</translation>
    </message>
    <message>
        <source>services</source>
        <translation>Dienste</translation>
    </message>
</context>
<context>
    <name>QlumSessionPage</name>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>%1: for this server</source>
        <translation>%1: für diesen Server</translation>
    </message>
    <message>
        <source>&amp;Connect time-out:</source>
        <translation>Zeitlimit beim &amp;Verbinden:</translation>
    </message>
    <message>
        <source>&amp;Most operations in a call:</source>
        <translation>&amp;Höchstzahl Operationen je Aufruf:</translation>
    </message>
    <message>
        <source>&amp;Publish time-out:</source>
        <translation>Zeitlimit für P&amp;ublish:</translation>
    </message>
    <message>
        <source>&amp;Watchdog, look every:</source>
        <translation>Watch&amp;dog, nachsehen alle:</translation>
    </message>
    <message>
        <source>At each reconnect, too</source>
        <translation>Auch bei jedem Wiederverbinden</translation>
    </message>
    <message>
        <source>At first use</source>
        <translation>Beim ersten Gebrauch</translation>
    </message>
    <message>
        <source>By hand only</source>
        <translation>Nur von Hand</translation>
    </message>
    <message>
        <source>For this server another one than in the settings</source>
        <translation>Für diesen Server ein anderer Wert als in den Einstellungen</translation>
    </message>
    <message>
        <source>How long the keys of the connection are used before new ones are agreed on.</source>
        <translation>Wie lange die Schlüssel der Verbindung verwendet werden, bevor neue vereinbart werden.</translation>
    </message>
    <message>
        <source>How long the server may hold a request for new values back when there are none.</source>
        <translation>Wie lange der Server eine Anfrage nach neuen Werten zurückhalten darf, wenn es keine gibt.</translation>
    </message>
    <message>
        <source>How long the server may take to answer what Tavelin asks on its own account.</source>
        <translation>Wie lange der Server für Antworten auf das brauchen darf, was Tavelin von sich aus fragt.</translation>
    </message>
    <message>
        <source>How long the server may take to answer when a connection is made.</source>
        <translation>Wie lange der Server für Antworten brauchen darf, wenn eine Verbindung hergestellt wird.</translation>
    </message>
    <message>
        <source>How long the server shall keep the session when the connection is lost.</source>
        <translation>Wie lange der Server die Sitzung aufbewahren soll, wenn die Verbindung verloren ist.</translation>
    </message>
    <message>
        <source>How often the server&apos;s state is read to see whether the connection still stands.</source>
        <translation>Wie oft der Zustand des Servers gelesen wird, um zu sehen, ob die Verbindung noch steht.</translation>
    </message>
    <message>
        <source>Langua&amp;ges:</source>
        <translation>S&amp;prachen:</translation>
    </message>
    <message>
        <source>Languages of the server&apos;s texts, the best first, as in: en, de-CH</source>
        <translation>Sprachen der Texte des Servers, die beste zuerst, etwa: en, de-CH</translation>
    </message>
    <message>
        <source>Load t&amp;ype dictionaries:</source>
        <translation>Typwörterbücher &amp;laden:</translation>
    </message>
    <message>
        <source>Name under which the server lists this session</source>
        <translation>Name, unter dem der Server diese Sitzung aufführt</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Reconnect:</source>
        <translation>Wieder verbinden:</translation>
    </message>
    <message>
        <source>Requests for more nodes than this are split into several calls; 0 leaves it to the server.</source>
        <translation>Anfragen für mehr Knoten werden auf mehrere Aufrufe verteilt; 0 überlässt es dem Server.</translation>
    </message>
    <message>
        <source>Secure channel li&amp;fetime:</source>
        <translation>Gültigkeit des sicheren Kan&amp;als:</translation>
    </message>
    <message>
        <source>Sess&amp;ion time-out:</source>
        <translation>Zeitlimit der S&amp;itzung:</translation>
    </message>
    <message>
        <source>Session &amp;name:</source>
        <translation>Sitzungs&amp;name:</translation>
    </message>
    <message>
        <source>Time-out of internal c&amp;alls:</source>
        <translation>Zeitlimit interner Au&amp;frufe:</translation>
    </message>
    <message>
        <source>Watchdog time-&amp;out:</source>
        <translation>Zeitlimit des Wat&amp;chdogs:</translation>
    </message>
    <message>
        <source>What is not ticked follows the settings of the program.</source>
        <translation>Was nicht angekreuzt ist, folgt den Einstellungen des Programms.</translation>
    </message>
    <message>
        <source>When a look takes longer, the connection counts as lost.</source>
        <translation>Dauert das Nachsehen länger, gilt die Verbindung als verloren.</translation>
    </message>
    <message>
        <source>When connected</source>
        <translation>Beim Verbinden</translation>
    </message>
    <message>
        <source>When the definitions of the server&apos;s own data types are loaded.</source>
        <translation>Wann die Definitionen der eigenen Datentypen des Servers geladen werden.</translation>
    </message>
    <message>
        <source>Whether a lost connection is restored until you disconnect.</source>
        <translation>Ob eine verlorene Verbindung wiederhergestellt wird, bis Sie trennen.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>as the server says</source>
        <translation>wie der Server sagt</translation>
    </message>
</context>
<context>
    <name>QlumSessionRun</name>
    <message>
        <source>Cancelled. What was measured before counts.</source>
        <translation>Abgebrochen. Was vorher gemessen wurde, zählt.</translation>
    </message>
    <message>
        <source>Closing a session</source>
        <translation>Eine Sitzung schließen</translation>
    </message>
    <message>
        <source>Each is opened as the server of the project would be: endpoints looked up, channel opened, certificate checked, session created and activated, then closed.</source>
        <translation>Jede wird geöffnet wie beim Server des Projekts: Endpunkte abgefragt, Kanal geöffnet, Zertifikat geprüft, Sitzung angelegt und aktiviert, dann geschlossen.</translation>
    </message>
    <message>
        <source>The run broke off: %1.</source>
        <translation>Der Lauf brach ab: %1.</translation>
    </message>
</context>
<context>
    <name>QlumSessionTable</name>
    <message>
        <source> (Current session)</source>
        <translation> (aktuelle Sitzung)</translation>
    </message>
    <message>
        <source>Application</source>
        <translation>Anwendung</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>Endpoint</source>
        <translation>Endpunkt</translation>
    </message>
    <message>
        <source>Errors</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Forgotten? No contact for %1 min</source>
        <translation>Vergessen? Seit %1 min kein Kontakt</translation>
    </message>
    <message>
        <source>Forgotten? No contact for %1 s</source>
        <translation>Vergessen? Seit %1 s kein Kontakt</translation>
    </message>
    <message>
        <source>Items</source>
        <translation>Elemente</translation>
    </message>
    <message>
        <source>Last Contact</source>
        <translation>Letzter Kontakt</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Notiz</translation>
    </message>
    <message>
        <source>Publish Requests</source>
        <translation>Publish-Anfragen</translation>
    </message>
    <message>
        <source>Requests</source>
        <translation>Anfragen</translation>
    </message>
    <message>
        <source>Requests per Second</source>
        <translation>Anfragen pro Sekunde</translation>
    </message>
    <message>
        <source>Security</source>
        <translation>Sicherheit</translation>
    </message>
    <message>
        <source>Session</source>
        <translation>Sitzung</translation>
    </message>
    <message>
        <source>Subscriptions</source>
        <translation>Subscriptions</translation>
    </message>
    <message>
        <source>This session</source>
        <translation>Diese Sitzung</translation>
    </message>
    <message>
        <source>Time-out [s]</source>
        <translation>Zeitlimit [s]</translation>
    </message>
    <message>
        <source>Unauthorized</source>
        <translation>Nicht berechtigt</translation>
    </message>
    <message>
        <source>User</source>
        <translation>Benutzer</translation>
    </message>
</context>
<context>
    <name>QlumSettingsDialog</name>
    <message>
        <source> days</source>
        <translation> Tage</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>&amp;Address space</source>
        <translation>&amp;Adressraum</translation>
    </message>
    <message>
        <source>&amp;Check for updates automatically</source>
        <translation>&amp;Automatisch nach Aktualisierungen suchen</translation>
    </message>
    <message>
        <source>&amp;Colours:</source>
        <translation>&amp;Farben:</translation>
    </message>
    <message>
        <source>&amp;Connections</source>
        <translation>&amp;Verbindungen</translation>
    </message>
    <message>
        <source>&amp;Dates and times:</source>
        <translation>&amp;Datum und Zeit:</translation>
    </message>
    <message>
        <source>&amp;Entries kept:</source>
        <translation>&amp;Behaltene Einträge:</translation>
    </message>
    <message>
        <source>&amp;File:</source>
        <translation>&amp;Datei:</translation>
    </message>
    <message>
        <source>&amp;Follow-up calls (-1: no limit):</source>
        <translation>&amp;Folgeaufrufe (-1: keine Grenze):</translation>
    </message>
    <message>
        <source>&amp;Interval:</source>
        <translation>&amp;Intervall:</translation>
    </message>
    <message>
        <source>&amp;Language:</source>
        <translation>&amp;Sprache:</translation>
    </message>
    <message>
        <source>&amp;Least level shown:</source>
        <translation>&amp;Niedrigste gezeigte Stufe:</translation>
    </message>
    <message>
        <source>&amp;Log and project</source>
        <translation>&amp;Protokoll und Projekt</translation>
    </message>
    <message>
        <source>&amp;Most operations in a call (0: server decides):</source>
        <translation>&amp;Höchstzahl Operationen je Aufruf (0: Server entscheidet):</translation>
    </message>
    <message>
        <source>&amp;Notice changes of the address space</source>
        <translation>&amp;Änderungen des Adressraums bemerken</translation>
    </message>
    <message>
        <source>&amp;Older files kept:</source>
        <translation>Behaltene ä&amp;ltere Dateien:</translation>
    </message>
    <message>
        <source>&amp;Publish time-out:</source>
        <translation>&amp;Publish-Zeitlimit:</translation>
    </message>
    <message>
        <source>&amp;Recent projects kept:</source>
        <translation>Behaltene letzte P&amp;rojekte:</translation>
    </message>
    <message>
        <source>&amp;Reconnect automatically</source>
        <translation>&amp;Automatisch wieder verbinden</translation>
    </message>
    <message>
        <source>&amp;References in an answer (0: server decides):</source>
        <translation>&amp;Referenzen je Antwort (0: Server entscheidet):</translation>
    </message>
    <message>
        <source>&amp;Session time-out:</source>
        <translation>&amp;Sitzungszeitlimit:</translation>
    </message>
    <message>
        <source>&amp;Size:</source>
        <translation>&amp;Größe:</translation>
    </message>
    <message>
        <source>&amp;Trace</source>
        <translation>&amp;Trace</translation>
    </message>
    <message>
        <source>&amp;Updates</source>
        <translation>Akt&amp;ualisierungen</translation>
    </message>
    <message>
        <source>100 %</source>
        <translation>100 %</translation>
    </message>
    <message>
        <source>125 %</source>
        <translation>125 %</translation>
    </message>
    <message>
        <source>150 %</source>
        <translation>150 %</translation>
    </message>
    <message>
        <source>175 %</source>
        <translation>175 %</translation>
    </message>
    <message>
        <source>200 %</source>
        <translation>200 %</translation>
    </message>
    <message>
        <source>2026-01-31 14:05:00</source>
        <translation>2026-01-31 14:05:00</translation>
    </message>
    <message>
        <source>&lt;b&gt;Pages&lt;/b&gt;&lt;br&gt;What the settings are about.</source>
        <translation>&lt;b&gt;Seiten&lt;/b&gt;&lt;br&gt;Worum es in den Einstellungen geht.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Search the settings&lt;/b&gt;&lt;br&gt;Shows only the settings with these words.</source>
        <translation>&lt;b&gt;Einstellungen durchsuchen&lt;/b&gt;&lt;br&gt;Zeigt nur die Einstellungen mit diesen Wörtern.</translation>
    </message>
    <message>
        <source>A file with so many lines is kept as an older one, and a new one begun.</source>
        <translation>Eine Datei mit so vielen Zeilen wird als ältere behalten und eine neue begonnen.</translation>
    </message>
    <message>
        <source>A&amp;ppearance</source>
        <translation>Erscheinungs&amp;bild</translation>
    </message>
    <message>
        <source>After so many calls for one node the rest of a list is left out, and the log says so.</source>
        <translation>Nach so vielen Aufrufen für einen Knoten wird der Rest einer Liste weggelassen, und das Protokoll sagt es.</translation>
    </message>
    <message>
        <source>All entries</source>
        <translation>Alle Einträge</translation>
    </message>
    <message>
        <source>As the system</source>
        <translation>Wie das System</translation>
    </message>
    <message>
        <source>As the system has them, or year-month-day with 24 hours.</source>
        <translation>Wie das System sie hat, oder Jahr-Monat-Tag mit 24 Stunden.</translation>
    </message>
    <message>
        <source>Asks for the number of the newest version when Tavelin starts.</source>
        <translation>Fragt beim Start von Tavelin nach der Nummer der neuesten Version.</translation>
    </message>
    <message>
        <source>Asks the server about each object, which takes time.</source>
        <translation>Fragt den Server nach jedem Objekt, was Zeit kostet.</translation>
    </message>
    <message>
        <source>At each reconnect, too</source>
        <translation>Auch bei jedem Wiederverbinden</translation>
    </message>
    <message>
        <source>At first use</source>
        <translation>Beim ersten Gebrauch</translation>
    </message>
    <message>
        <source>Beyond so many the oldest entries of the log window go.</source>
        <translation>Darüber hinaus fallen die ältesten Einträge des Protokollfensters weg.</translation>
    </message>
    <message>
        <source>Beyond so many the oldest goes.</source>
        <translation>Darüber hinaus fällt das älteste weg.</translation>
    </message>
    <message>
        <source>Browse &amp;time-out:</source>
        <translation>Zeitlimit beim &amp;Durchsuchen:</translation>
    </message>
    <message>
        <source>By hand only</source>
        <translation>Nur von Hand</translation>
    </message>
    <message>
        <source>C&amp;ertificates</source>
        <translation>&amp;Zertifikate</translation>
    </message>
    <message>
        <source>Ca&amp;ll time-out:</source>
        <translation>Zeitlimit für A&amp;ufrufe:</translation>
    </message>
    <message>
        <source>Changes of the project that were not saved are lost then.</source>
        <translation>Ungespeicherte Änderungen des Projekts sind dann verloren.</translation>
    </message>
    <message>
        <source>Colours for colour &amp;blindness</source>
        <translation>Farben für Farbfe&amp;hlsichtige</translation>
    </message>
    <message>
        <source>Configure Tavelin</source>
        <translation>Tavelin einstellen</translation>
    </message>
    <message>
        <source>Connect &amp;time-out:</source>
        <translation>Zeitlimit beim &amp;Verbinden:</translation>
    </message>
    <message>
        <source>Connection c&amp;heck every:</source>
        <translation>Ver&amp;bindung prüfen alle:</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>Dark or bright windows, or as the desktop has them.</source>
        <translation>Dunkle oder helle Fenster, oder wie der Desktop sie hat.</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>Daten</translation>
    </message>
    <message>
        <source>Each level contains those before it.</source>
        <translation>Jede Stufe enthält die davor.</translation>
    </message>
    <message>
        <source>Each level contains those before it; the last ones make Tavelin slow.</source>
        <translation>Jede Stufe enthält die davor; die letzten machen Tavelin langsam.</translation>
    </message>
    <message>
        <source>End without &amp;asking to save the project</source>
        <translation>Ohne &amp;Frage nach dem Speichern des Projekts beenden</translation>
    </message>
    <message>
        <source>Entries in a f&amp;ile:</source>
        <translation>Einträge &amp;in einer Datei:</translation>
    </message>
    <message>
        <source>Errors</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Every step</source>
        <translation>Jeder Schritt</translation>
    </message>
    <message>
        <source>For a log that spans several days.</source>
        <translation>Für ein Protokoll über mehrere Tage.</translation>
    </message>
    <message>
        <source>Function calls</source>
        <translation>Funktionsaufrufe</translation>
    </message>
    <message>
        <source>Good, uncertain and bad are told by colours that differ without red and green.</source>
        <translation>Gut, ungewiss und schlecht werden durch Farben unterschieden, die ohne Rot und Grün auskommen.</translation>
    </message>
    <message>
        <source>Has servers tell of nodes that come and go, and browses these again.</source>
        <translation>Lässt Server kommende und gehende Knoten melden und durchsucht diese neu.</translation>
    </message>
    <message>
        <source>How large texts and pictures are.</source>
        <translation>Wie groß Texte und Bilder sind.</translation>
    </message>
    <message>
        <source>How long a server may hold a request for new values back when there are none.</source>
        <translation>Wie lange ein Server eine Anfrage nach neuen Werten zurückhalten darf, wenn es keine gibt.</translation>
    </message>
    <message>
        <source>How long a server may take to answer what Tavelin asks on its own account.</source>
        <translation>Wie lange ein Server für Antworten auf das brauchen darf, was Tavelin von sich aus fragt.</translation>
    </message>
    <message>
        <source>How long a server may take to answer what you ask it.</source>
        <translation>Wie lange ein Server für Antworten auf das brauchen darf, was Sie ihn fragen.</translation>
    </message>
    <message>
        <source>How long a server may take to answer when a connection is made.</source>
        <translation>Wie lange ein Server für Antworten brauchen darf, wenn eine Verbindung hergestellt wird.</translation>
    </message>
    <message>
        <source>How long a server may take to list what is below a node.</source>
        <translation>Wie lange ein Server brauchen darf, um aufzulisten, was unter einem Knoten ist.</translation>
    </message>
    <message>
        <source>How long the keys of a connection are used before new ones are agreed on.</source>
        <translation>Wie lange die Schlüssel einer Verbindung verwendet werden, bevor neue vereinbart werden.</translation>
    </message>
    <message>
        <source>How long the server shall keep the session, with what is watched, when the connection is lost.</source>
        <translation>Wie lange der Server die Sitzung mit allem Überwachten aufbewahren soll, wenn die Verbindung verloren ist.</translation>
    </message>
    <message>
        <source>How long to wait before the next question.</source>
        <translation>Wie lange bis zur nächsten Frage gewartet wird.</translation>
    </message>
    <message>
        <source>How many projects the menu &quot;File&quot; offers.</source>
        <translation>Wie viele Projekte das Menü „Datei“ anbietet.</translation>
    </message>
    <message>
        <source>How often the server&apos;s state is read to see whether the connection still stands.</source>
        <translation>Wie oft der Zustand des Servers gelesen wird, um zu sehen, ob die Verbindung noch steht.</translation>
    </message>
    <message>
        <source>In views that are opened from now on: %1</source>
        <translation>In Ansichten, die ab jetzt geöffnet werden: %1</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>L&amp;evel:</source>
        <translation>&amp;Stufe:</translation>
    </message>
    <message>
        <source>Lan&amp;guage of server texts:</source>
        <translation>Spra&amp;che der Servertexte:</translation>
    </message>
    <message>
        <source>Le&amp;vel of the stack:</source>
        <translation>Stuf&amp;e des Stacks:</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Load type &amp;dictionaries:</source>
        <translation>Typwörterbücher &amp;laden:</translation>
    </message>
    <message>
        <source>Longer lists are fetched in several calls.</source>
        <translation>Längere Listen werden mit mehreren Aufrufen geholt.</translation>
    </message>
    <message>
        <source>Of menus and messages; each translation that is installed can be chosen.</source>
        <translation>Der Menüs und Meldungen; jede installierte Übersetzung kann gewählt werden.</translation>
    </message>
    <message>
        <source>Of this page</source>
        <translation>Dieser Seite</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>R&amp;ole of new servers:</source>
        <translation>R&amp;olle neuer Server:</translation>
    </message>
    <message>
        <source>Requests for more nodes than this are split into several calls.</source>
        <translation>Anfragen für mehr Knoten werden auf mehrere Aufrufe verteilt.</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Search the settings</source>
        <translation>Einstellungen durchsuchen</translation>
    </message>
    <message>
        <source>Secure channel l&amp;ifetime:</source>
        <translation>&amp;Gültigkeit des sicheren Kanals:</translation>
    </message>
    <message>
        <source>Server certificates pass the validation although</source>
        <translation>Serverzertifikate bestehen die Prüfung, obwohl</translation>
    </message>
    <message>
        <source>Show &amp;icons that servers offer</source>
        <translation>S&amp;ymbole zeigen, die Server anbieten</translation>
    </message>
    <message>
        <source>Show the &amp;date with the time</source>
        <translation>Mit der Zeit das Dat&amp;um zeigen</translation>
    </message>
    <message>
        <source>Show times in &amp;UTC</source>
        <translation>Zeiten in &amp;UTC zeigen</translation>
    </message>
    <message>
        <source>The language that servers are asked for, such as en or de-AT.</source>
        <translation>Die Sprache, um die Server gebeten werden, etwa en oder de-AT.</translation>
    </message>
    <message>
        <source>This setting cannot be used.</source>
        <translation>Diese Einstellung kann nicht verwendet werden.</translation>
    </message>
    <message>
        <source>Time-out of &amp;a check:</source>
        <translation>&amp;Zeitlimit einer Prüfung:</translation>
    </message>
    <message>
        <source>Time-out of i&amp;nternal calls:</source>
        <translation>Zeitlimit &amp;interner Aufrufe:</translation>
    </message>
    <message>
        <source>Times are those of the time zone otherwise.</source>
        <translation>Sonst sind Zeiten die der Zeitzone.</translation>
    </message>
    <message>
        <source>Trace Tavelin and the client &amp;layer</source>
        <translation>Trace von Tavelin und &amp;Clientschicht</translation>
    </message>
    <message>
        <source>Trace the communication &amp;stack</source>
        <translation>Trace des &amp;Kommunikationsstacks</translation>
    </message>
    <message>
        <source>Tries to restore a lost connection until it is there again or you disconnect.</source>
        <translation>Versucht, eine verlorene Verbindung wiederherzustellen, bis sie zurück ist oder Sie trennen.</translation>
    </message>
    <message>
        <source>Warnings</source>
        <translation>Warnungen</translation>
    </message>
    <message>
        <source>What is less serious does not reach the log window.</source>
        <translation>Was weniger ernst ist, erreicht das Protokollfenster nicht.</translation>
    </message>
    <message>
        <source>What may be sent to a server that is new in a project. Look: only what changes nothing. Operate: writing values and calling methods, too. Commission: everything.</source>
        <translation>Was an einen Server gesendet werden darf, der im Projekt neu ist. Ansehen: nur, was nichts ändert. Bedienen: auch Werte schreiben und Methoden aufrufen. Inbetriebnehmen: alles.</translation>
    </message>
    <message>
        <source>When Tavelin is started the next time: %1</source>
        <translation>Beim nächsten Start von Tavelin: %1</translation>
    </message>
    <message>
        <source>When a check takes longer, the connection counts as lost.</source>
        <translation>Dauert eine Prüfung länger, gilt die Verbindung als verloren.</translation>
    </message>
    <message>
        <source>When a server is connected the next time: %1</source>
        <translation>Beim nächsten Verbinden eines Servers: %1</translation>
    </message>
    <message>
        <source>When connected</source>
        <translation>Beim Verbinden</translation>
    </message>
    <message>
        <source>When the definitions of a server&apos;s own data types are read.</source>
        <translation>Wann die Definitionen der eigenen Datentypen eines Servers gelesen werden.</translation>
    </message>
    <message>
        <source>Where the trace is written to; its folder must be there.</source>
        <translation>Wohin der Trace geschrieben wird; der Ordner muss vorhanden sein.</translation>
    </message>
    <message>
        <source>Without this check a certificate that should no longer be used is accepted without a question.</source>
        <translation>Ohne diese Prüfung wird ein Zertifikat, das nicht mehr verwendet werden sollte, ohne Frage angenommen.</translation>
    </message>
    <message>
        <source>Writes what it does to the same file.</source>
        <translation>Schreibt, was er tut, in dieselbe Datei.</translation>
    </message>
    <message>
        <source>Writes what they do to the file below, for the search of faults.</source>
        <translation>Schreibt zur Fehlersuche in die Datei unten, was sie tun.</translation>
    </message>
    <message>
        <source>an &amp;issuer&apos;s certificate is expired or not yet valid</source>
        <translation>ein Zertifikat des &amp;Ausstellers abgelaufen oder noch nicht gültig ist</translation>
    </message>
    <message>
        <source>there is no &amp;revocation list for them</source>
        <translation>es zu ihnen keine Spe&amp;rrliste gibt</translation>
    </message>
    <message>
        <source>there is no revocation list for an issuer&apos;s &amp;certificate</source>
        <translation>es zum Zer&amp;tifikat eines Ausstellers keine Sperrliste gibt</translation>
    </message>
    <message>
        <source>they are &amp;expired or not yet valid</source>
        <translation>sie abge&amp;laufen oder noch nicht gültig sind</translation>
    </message>
</context>
<context>
    <name>QlumSettingsFile</name>
    <message>
        <source>The settings could not be written.</source>
        <translation>Die Einstellungen konnten nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>The settings file %1 cannot be read and not be moved.</source>
        <translation>Die Einstellungsdatei %1 kann weder gelesen noch verschoben werden.</translation>
    </message>
    <message>
        <source>The settings file was damaged; it is kept as %1.</source>
        <translation>Die Einstellungsdatei war beschädigt; sie ist als %1 aufbewahrt.</translation>
    </message>
</context>
<context>
    <name>QlumSettingsForm</name>
    <message>
        <source>%1 cannot be written.</source>
        <translation>%1 kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>%1 is a folder.</source>
        <translation>%1 ist ein Ordner.</translation>
    </message>
    <message>
        <source>...</source>
        <translation>...</translation>
    </message>
    <message>
        <source>&lt;b&gt;Choose a file&lt;/b&gt;&lt;br&gt;Asks for a file in place of the one here.</source>
        <translation>&lt;b&gt;Eine Datei wählen&lt;/b&gt;&lt;br&gt;Fragt nach einer Datei anstelle dieser.</translation>
    </message>
    <message>
        <source>A trace needs the name of a file.</source>
        <translation>Ein Trace braucht den Namen einer Datei.</translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation>Eine Datei wählen</translation>
    </message>
    <message>
        <source>Log Files (*.log)</source>
        <translation>Protokolldateien (*.log)</translation>
    </message>
    <message>
        <source>The folder %1 is not there.</source>
        <translation>Der Ordner %1 ist nicht vorhanden.</translation>
    </message>
    <message>
        <source>The name of the trace file must begin with its folder.</source>
        <translation>Der Name der Trace-Datei muss mit ihrem Ordner beginnen.</translation>
    </message>
    <message>
        <source>Trace File</source>
        <translation>Trace-Datei</translation>
    </message>
</context>
<context>
    <name>QlumSettingsRegistry</name>
    <message>
        <source>The setting &apos;%1&apos; was registered by two tools; the first keeps it.</source>
        <translation>Die Einstellung „%1“ wurde von zwei Werkzeugen angemeldet; das erste behält sie.</translation>
    </message>
</context>
<context>
    <name>QlumShortcutsDialog</name>
    <message>
        <source>&lt;b&gt;Search the commands&lt;/b&gt;&lt;br&gt;Shows only commands with this text.</source>
        <translation>&lt;b&gt;Befehle durchsuchen&lt;/b&gt;&lt;br&gt;Zeigt nur Befehle mit diesem Text.</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>Befehl</translation>
    </message>
    <message>
        <source>Everywhere</source>
        <translation>Überall</translation>
    </message>
    <message>
        <source>Keyboard Shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Keyboard shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Search the commands</source>
        <translation>Befehle durchsuchen</translation>
    </message>
    <message>
        <source>Where</source>
        <translation>Wo</translation>
    </message>
</context>
<context>
    <name>QlumShownPage</name>
    <message>
        <source>%1 + %2 ps</source>
        <translation>%1 + %2 ps</translation>
    </message>
    <message>
        <source>%1: entry %2 of the string table</source>
        <translation>%1: Eintrag %2 der Zeichenfolgentabelle</translation>
    </message>
    <message>
        <source>Additional: %1</source>
        <translation>Zusatz: %1</translation>
    </message>
    <message>
        <source>Inner diagnosis:</source>
        <translation>Innere Diagnose:</translation>
    </message>
    <message>
        <source>Inner status: %1</source>
        <translation>Innerer Status: %1</translation>
    </message>
    <message>
        <source>It is only shown here. Its JSON text can be edited.</source>
        <translation>Hier wird es nur gezeigt. Sein JSON-Text kann bearbeitet werden.</translation>
    </message>
    <message>
        <source>It is only shown here: these are its bytes. Its JSON text can be edited.</source>
        <translation>Hier wird es nur gezeigt: Das sind seine Bytes. Sein JSON-Text kann bearbeitet werden.</translation>
    </message>
    <message>
        <source>Its body is XML, of the type with the encoding %1.</source>
        <translation>Der Inhalt ist XML, vom Typ mit der Kodierung %1.</translation>
    </message>
    <message>
        <source>Locale</source>
        <translation>Gebietsschema</translation>
    </message>
    <message>
        <source>Namespace</source>
        <translation>Namensraum</translation>
    </message>
    <message>
        <source>Server time: %1</source>
        <translation>Serverzeit: %1</translation>
    </message>
    <message>
        <source>Source time: %1</source>
        <translation>Quellzeit: %1</translation>
    </message>
    <message>
        <source>Status: %1</source>
        <translation>Status: %1</translation>
    </message>
    <message>
        <source>Symbolic id</source>
        <translation>Symbolische Id</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>The bytes do not match the definition that the server gave for the encoding %1: %2.</source>
        <translation>Die Bytes passen nicht zur Definition, die der Server für die Kodierung %1 gab: %2.</translation>
    </message>
    <message>
        <source>The fields are not known: the server gave no definition for the encoding %1. These are its bytes.</source>
        <translation>Die Felder sind nicht bekannt: Der Server gab für die Kodierung %1 keine Definition. Das sind ihre Bytes.</translation>
    </message>
    <message>
        <source>The structure is empty: it has neither a type nor a body.</source>
        <translation>Die Struktur ist leer: Sie hat weder Typ noch Inhalt.</translation>
    </message>
    <message>
        <source>There is no value yet. One can be given as JSON text only.</source>
        <translation>Es gibt noch keinen Wert. Er kann nur als JSON-Text eingegeben werden.</translation>
    </message>
    <message>
        <source>There is no value yet: choose its type.</source>
        <translation>Es gibt noch keinen Wert: Wählen Sie seinen Typ.</translation>
    </message>
    <message>
        <source>Type: %1</source>
        <translation>Typ: %1</translation>
    </message>
    <message>
        <source>Value: %1</source>
        <translation>Wert: %1</translation>
    </message>
</context>
<context>
    <name>QlumSideConnect</name>
    <message>
        <source>Server Node</source>
        <translation>Serverknoten</translation>
    </message>
</context>
<context>
    <name>QlumSnapshot</name>
    <message>
        <source>The snapshot has more than %1 rows.</source>
        <translation>Die Momentaufnahme hat mehr als %1 Zeilen.</translation>
    </message>
    <message>
        <source>The snapshot was written by a newer version of the program.</source>
        <translation>Die Momentaufnahme wurde von einer neueren Version des Programms geschrieben.</translation>
    </message>
    <message>
        <source>This is no snapshot of a data access view.</source>
        <translation>Das ist keine Momentaufnahme einer Datenzugriffsansicht.</translation>
    </message>
    <message>
        <source>This is no snapshot: %1.</source>
        <translation>Das ist keine Momentaufnahme: %1.</translation>
    </message>
</context>
<context>
    <name>QlumSnapshotPart</name>
    <message>
        <source>%1 (not in the project)</source>
        <translation>%1 (nicht im Projekt)</translation>
    </message>
    <message>
        <source>%1 cannot be written.</source>
        <translation>%1 kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>%1 changed, %2 with another status, %3 gone, %4 new, %5 the same</source>
        <translation>%1 geändert, %2 mit anderem Status, %3 weg, %4 neu, %5 gleich</translation>
    </message>
    <message>
        <source>%1 was not loaded.</source>
        <translation>%1 wurde nicht geladen.</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message numerus="yes">
        <source>%n snapshot(s) are not kept with the project: %1.</source>
        <translation>
            <numerusform>%n Momentaufnahme wird nicht mit dem Projekt behalten: %1.</numerusform>
            <numerusform>%n Momentaufnahmen werden nicht mit dem Projekt behalten: %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n value(s) of the snapshot cannot be read.</source>
        <translation>
            <numerusform>%n Wert der Momentaufnahme kann nicht gelesen werden.</numerusform>
            <numerusform>%n Werte der Momentaufnahme können nicht gelesen werden.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Before:</source>
        <translation>&amp;Vorher:</translation>
    </message>
    <message>
        <source>&amp;Compare</source>
        <translation>&amp;Vergleichen</translation>
    </message>
    <message>
        <source>&amp;Load...</source>
        <translation>&amp;Laden...</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>&amp;Save As...</source>
        <translation>&amp;Speichern unter...</translation>
    </message>
    <message>
        <source>&amp;Snapshots</source>
        <translation>&amp;Momentaufnahmen</translation>
    </message>
    <message>
        <source>&amp;Take Snapshot...</source>
        <translation>&amp;Momentaufnahme machen...</translation>
    </message>
    <message>
        <source>A view keeps %1 of them.</source>
        <translation>Eine Ansicht behält %1 davon.</translation>
    </message>
    <message>
        <source>A view may have %1 MB of them there. They go with this window unless you save them to files or remove others.</source>
        <translation>Eine Ansicht darf dort %1 MB davon haben. Sie verschwinden mit diesem Fenster, wenn Sie sie nicht in Dateien speichern oder andere entfernen.</translation>
    </message>
    <message>
        <source>Af&amp;ter:</source>
        <translation>&amp;Nachher:</translation>
    </message>
    <message>
        <source>Also what is the sa&amp;me</source>
        <translation>Auch das &amp;Gleiche</translation>
    </message>
    <message>
        <source>Compare a snapshot with now; rows that have changed have old values.</source>
        <translation>Vergleichen Sie eine Momentaufnahme mit jetzt; geänderte Zeilen haben alte Werte.</translation>
    </message>
    <message>
        <source>Compares the two that are chosen below; now means this moment.</source>
        <translation>Vergleicht die beiden unten gewählten; „Jetzt“ meint diesen Moment.</translation>
    </message>
    <message>
        <source>Differences</source>
        <translation>Unterschiede</translation>
    </message>
    <message>
        <source>Forgets the snapshot that is chosen as the one before. Files stay.</source>
        <translation>Vergisst die als Vorher gewählte Momentaufnahme. Dateien bleiben.</translation>
    </message>
    <message>
        <source>Keeps all rows with their values under a name.</source>
        <translation>Bewahrt alle Zeilen mit ihren Werten unter einem Namen auf.</translation>
    </message>
    <message>
        <source>Load Snapshot</source>
        <translation>Momentaufnahme laden</translation>
    </message>
    <message>
        <source>Name of the snapshot:</source>
        <translation>Name der Momentaufnahme:</translation>
    </message>
    <message>
        <source>Now</source>
        <translation>Jetzt</translation>
    </message>
    <message>
        <source>Reads a snapshot from a file.</source>
        <translation>Liest eine Momentaufnahme aus einer Datei.</translation>
    </message>
    <message>
        <source>Save As...</source>
        <translation>Speichern unter...</translation>
    </message>
    <message>
        <source>Save Snapshot</source>
        <translation>Momentaufnahme speichern</translation>
    </message>
    <message>
        <source>Shows the rows without a difference, too.</source>
        <translation>Zeigt auch die Zeilen ohne Unterschied.</translation>
    </message>
    <message>
        <source>Snapshot %1</source>
        <translation>Momentaufnahme %1</translation>
    </message>
    <message>
        <source>Snapshot after</source>
        <translation>Momentaufnahme nachher</translation>
    </message>
    <message>
        <source>Snapshot before</source>
        <translation>Momentaufnahme vorher</translation>
    </message>
    <message>
        <source>Snapshots</source>
        <translation>Momentaufnahmen</translation>
    </message>
    <message>
        <source>Snapshots (*.json)</source>
        <translation>Momentaufnahmen (*.json)</translation>
    </message>
    <message>
        <source>Snapshots (*.json);;All files (*)</source>
        <translation>Momentaufnahmen (*.json);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Stage &amp;Old Values</source>
        <translation>&amp;Alte Werte vormerken</translation>
    </message>
    <message>
        <source>Stages what the selected rows were before, or all rows that have changed. Nothing is written before you say so.</source>
        <translation>Merkt vor, was die gewählten Zeilen vorher waren, oder alle geänderten Zeilen. Geschrieben wird nichts, bevor Sie es sagen.</translation>
    </message>
    <message>
        <source>Take Snapshot</source>
        <translation>Momentaufnahme machen</translation>
    </message>
    <message>
        <source>Take a snapshot, and compare it with the values of now or with another one. What is the same is not shown.</source>
        <translation>Machen Sie eine Momentaufnahme und vergleichen Sie sie mit den Werten von jetzt oder mit einer anderen. Gleiches wird nicht gezeigt.</translation>
    </message>
    <message>
        <source>The file is too large.</source>
        <translation>Die Datei ist zu groß.</translation>
    </message>
    <message>
        <source>The oldest snapshot, &quot;%1&quot;, was given up.</source>
        <translation>Die älteste Momentaufnahme, „%1“, wurde aufgegeben.</translation>
    </message>
    <message>
        <source>There are no old values to stage.</source>
        <translation>Es gibt keine alten Werte zum Vormerken.</translation>
    </message>
    <message>
        <source>They are compared as if there had been none.</source>
        <translation>Sie werden verglichen, als hätte es keine gegeben.</translation>
    </message>
    <message>
        <source>Without a name</source>
        <translation>Ohne Namen</translation>
    </message>
    <message>
        <source>Writes the snapshot that is chosen as the one before to a file.</source>
        <translation>Schreibt die als Vorher gewählte Momentaufnahme in eine Datei.</translation>
    </message>
    <message>
        <source>snapshot</source>
        <translation>Momentaufnahme</translation>
    </message>
</context>
<context>
    <name>QlumStagedModel</name>
    <message>
        <source>#</source>
        <translation>#</translation>
    </message>
    <message>
        <source>Being looked at</source>
        <translation>Wird angesehen</translation>
    </message>
    <message>
        <source>Check</source>
        <translation>Prüfung</translation>
    </message>
    <message>
        <source>Display Name</source>
        <translation>Anzeigename</translation>
    </message>
    <message>
        <source>New Value</source>
        <translation>Neuer Wert</translation>
    </message>
    <message>
        <source>Node Id</source>
        <translation>NodeId</translation>
    </message>
    <message>
        <source>Old Value</source>
        <translation>Alter Wert</translation>
    </message>
    <message>
        <source>Read Back</source>
        <translation>Zurückgelesen</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
</context>
<context>
    <name>QlumStagedPage</name>
    <message numerus="yes">
        <source>%n staged</source>
        <translation>
            <numerusform>%n vorgemerkt</numerusform>
            <numerusform>%n vorgemerkt</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Discard</source>
        <translation>&amp;Verwerfen</translation>
    </message>
    <message>
        <source>&amp;Revert</source>
        <translation>&amp;Zurücksetzen</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>A&amp;nhalten</translation>
    </message>
    <message>
        <source>&amp;Write All</source>
        <translation>Alle &amp;schreiben</translation>
    </message>
    <message numerus="yes">
        <source>, %n cannot be sent</source>
        <translation>
            <numerusform>, %n kann nicht gesendet werden</numerusform>
            <numerusform>, %n können nicht gesendet werden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>, %n refused by the checks</source>
        <translation>
            <numerusform>, %n von den Prüfungen abgelehnt</numerusform>
            <numerusform>, %n von den Prüfungen abgelehnt</numerusform>
        </translation>
    </message>
    <message>
        <source>Discard &amp;All</source>
        <translation>Alle v&amp;erwerfen</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Ab</translation>
    </message>
    <message>
        <source>Empties the list. Nothing is written.</source>
        <translation>Leert die Liste. Geschrieben wird nichts.</translation>
    </message>
    <message>
        <source>Enter new values in the column &quot;New Value&quot; of the table above, or paste them there. Nothing is written before you press Write All.</source>
        <translation>Geben Sie in der Spalte „Neuer Wert“ der Tabelle oben neue Werte ein, oder fügen Sie sie dort ein. Geschrieben wird nichts, bevor Sie „Alle schreiben“ drücken.</translation>
    </message>
    <message>
        <source>Leaves out what is not written yet.</source>
        <translation>Lässt weg, was noch nicht geschrieben ist.</translation>
    </message>
    <message>
        <source>Puts the old values back where nobody has changed them since, the last one first.</source>
        <translation>Setzt die alten Werte zurück, wo sie seither niemand geändert hat, den letzten zuerst.</translation>
    </message>
    <message>
        <source>Read &amp;back</source>
        <translation>&amp;Zurücklesen</translation>
    </message>
    <message>
        <source>Reads each value after it was written, and shows what the server has made of it.</source>
        <translation>Liest jeden Wert nach dem Schreiben und zeigt, was der Server daraus gemacht hat.</translation>
    </message>
    <message>
        <source>S&amp;top at the first failure</source>
        <translation>Beim ersten &amp;Fehler anhalten</translation>
    </message>
    <message>
        <source>Staged values</source>
        <translation>Vorgemerkte Werte</translation>
    </message>
    <message>
        <source>The selected values are staged no more. Nothing is written.</source>
        <translation>Die gewählten Werte sind nicht mehr vorgemerkt. Geschrieben wird nichts.</translation>
    </message>
    <message>
        <source>The selected values are written earlier.</source>
        <translation>Die gewählten Werte werden früher geschrieben.</translation>
    </message>
    <message>
        <source>The selected values are written later.</source>
        <translation>Die gewählten Werte werden später geschrieben.</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Auf</translation>
    </message>
    <message>
        <source>What comes behind a value that was not written is left out. Otherwise all are tried.</source>
        <translation>Was hinter einem nicht geschriebenen Wert kommt, wird weggelassen. Sonst werden alle versucht.</translation>
    </message>
    <message>
        <source>Writes the staged values, one after the other in this order.</source>
        <translation>Schreibt die vorgemerkten Werte nacheinander in dieser Reihenfolge.</translation>
    </message>
</context>
<context>
    <name>QlumStagedPart</name>
    <message>
        <source>%1 of %2 old values are there again.</source>
        <translation>%1 von %2 alten Werten sind wieder da.</translation>
    </message>
    <message>
        <source>%1 of %2 values were written.</source>
        <translation>%1 von %2 Werten wurden geschrieben.</translation>
    </message>
    <message numerus="yes">
        <source>%n staged value(s) are not kept with the project.</source>
        <translation>
            <numerusform>%n vorgemerkter Wert wird nicht mit dem Projekt behalten.</numerusform>
            <numerusform>%n vorgemerkte Werte werden nicht mit dem Projekt behalten.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n staged value(s) were held back by the checks.</source>
        <translation>
            <numerusform>%n vorgemerkter Wert wurde von den Prüfungen zurückgehalten.</numerusform>
            <numerusform>%n vorgemerkte Werte wurden von den Prüfungen zurückgehalten.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n value(s) had no row to go to.</source>
        <translation>
            <numerusform>%n Wert hatte keine Zeile.</numerusform>
            <numerusform>%n Werte hatten keine Zeile.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Discard New Values</source>
        <translation>Neue Werte &amp;verwerfen</translation>
    </message>
    <message>
        <source>&amp;New Values</source>
        <translation>&amp;Neue Werte</translation>
    </message>
    <message>
        <source>&amp;Paste as New Values</source>
        <translation>Als neue Werte &amp;einfügen</translation>
    </message>
    <message>
        <source>A view keeps %1 of them there, and only those whose value can be written down.</source>
        <translation>Eine Ansicht behält %1 davon, und nur solche, deren Wert sich aufschreiben lässt.</translation>
    </message>
    <message>
        <source>Copy a column of values, and select the row where it begins.</source>
        <translation>Kopieren Sie eine Spalte von Werten, und wählen Sie die Zeile, wo sie beginnt.</translation>
    </message>
    <message>
        <source>Looking at staged values</source>
        <translation>Vorgemerkte Werte ansehen</translation>
    </message>
    <message numerus="yes">
        <source>New value of the %n selected row(s):</source>
        <translation>
            <numerusform>Neuer Wert der %n gewählten Zeile:</numerusform>
            <numerusform>Neuer Wert der %n gewählten Zeilen:</numerusform>
        </translation>
    </message>
    <message>
        <source>No row is selected.</source>
        <translation>Es ist keine Zeile gewählt.</translation>
    </message>
    <message>
        <source>No value has come yet, so nothing is known of its fields.</source>
        <translation>Es ist noch kein Wert gekommen, daher ist von seinen Feldern nichts bekannt.</translation>
    </message>
    <message>
        <source>Only values can be staged.</source>
        <translation>Nur Werte können vorgemerkt werden.</translation>
    </message>
    <message>
        <source>Putting old values back</source>
        <translation>Alte Werte zurücksetzen</translation>
    </message>
    <message>
        <source>Send Them Too</source>
        <translation>Trotzdem senden</translation>
    </message>
    <message>
        <source>Set New &amp;Value...</source>
        <translation>Neuen &amp;Wert setzen...</translation>
    </message>
    <message>
        <source>Set New Value</source>
        <translation>Neuen Wert setzen</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Zeigen</translation>
    </message>
    <message>
        <source>Staged Values</source>
        <translation>Vorgemerkte Werte</translation>
    </message>
    <message>
        <source>Stages one value for all selected rows, in the type of each.</source>
        <translation>Merkt einen Wert für alle gewählten Zeilen vor, im Typ jeder Zeile.</translation>
    </message>
    <message>
        <source>Stages the cells of the clipboard, one for each row from the selected one downward; with several rows selected, only in these.</source>
        <translation>Merkt die Zellen der Zwischenablage vor, eine je Zeile ab der gewählten abwärts; bei mehreren gewählten Zeilen nur in diesen.</translation>
    </message>
    <message>
        <source>Stages what the selected rows show now, to be edited or written later.</source>
        <translation>Merkt vor, was die gewählten Zeilen jetzt zeigen, um es zu bearbeiten oder später zu schreiben.</translation>
    </message>
    <message>
        <source>Take &amp;Present Values as New Values</source>
        <translation>&amp;Jetzige Werte als neue Werte nehmen</translation>
    </message>
    <message>
        <source>The clipboard has more lines than there are rows.</source>
        <translation>Die Zwischenablage hat mehr Zeilen, als es hier gibt.</translation>
    </message>
    <message>
        <source>The clipboard holds no text.</source>
        <translation>Die Zwischenablage enthält keinen Text.</translation>
    </message>
    <message>
        <source>The namespace of its node is not known yet.</source>
        <translation>Der Namensraum seines Knotens ist noch nicht bekannt.</translation>
    </message>
    <message>
        <source>The row names no node of a server.</source>
        <translation>Die Zeile nennt keinen Knoten eines Servers.</translation>
    </message>
    <message>
        <source>The selected rows have no staged value any more. Nothing is written.</source>
        <translation>Die gewählten Zeilen haben keinen vorgemerkten Wert mehr. Geschrieben wird nichts.</translation>
    </message>
    <message>
        <source>The value has no such field now, or nobody knows its type.</source>
        <translation>Der Wert hat jetzt kein solches Feld, oder niemand kennt seinen Typ.</translation>
    </message>
    <message>
        <source>Writing staged values</source>
        <translation>Vorgemerkte Werte schreiben</translation>
    </message>
</context>
<context>
    <name>QlumStagedText</name>
    <message>
        <source>&quot;%1&quot; is no value of the type %2.</source>
        <translation>„%1“ ist kein Wert des Typs %2.</translation>
    </message>
    <message>
        <source>The type of the value is not known; edit it in its own window.</source>
        <translation>Der Typ des Werts ist nicht bekannt; bearbeiten Sie ihn in seinem eigenen Fenster.</translation>
    </message>
    <message>
        <source>an array of %1</source>
        <translation>ein Array von %1</translation>
    </message>
</context>
<context>
    <name>QlumStagedWrite</name>
    <message>
        <source>; the old value could not be read</source>
        <translation>; der alte Wert konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>It is not known whether it was written. %1</source>
        <translation>Ob er geschrieben wurde, ist nicht bekannt. %1</translation>
    </message>
    <message>
        <source>Left out: one before it was not written, or you have stopped</source>
        <translation>Weggelassen: Einer davor wurde nicht geschrieben, oder Sie haben angehalten</translation>
    </message>
    <message>
        <source>Not reverted. %1</source>
        <translation>Nicht zurückgesetzt. %1</translation>
    </message>
    <message>
        <source>Not reverted: somebody else has changed it to %1</source>
        <translation>Nicht zurückgesetzt: Jemand anderes hat ihn auf %1 geändert</translation>
    </message>
    <message>
        <source>Not sent. %1</source>
        <translation>Nicht gesendet. %1</translation>
    </message>
    <message>
        <source>Refused. %1</source>
        <translation>Abgelehnt. %1</translation>
    </message>
    <message>
        <source>The old value is there again</source>
        <translation>Der alte Wert ist wieder da</translation>
    </message>
    <message>
        <source>Written</source>
        <translation>Geschrieben</translation>
    </message>
    <message>
        <source>Written, %1</source>
        <translation>Geschrieben, %1</translation>
    </message>
    <message>
        <source>Written, but %1 was read back</source>
        <translation>Geschrieben, aber zurückgelesen wurde %1</translation>
    </message>
</context>
<context>
    <name>QlumStartPage</name>
    <message>
        <source>&lt;b&gt;Start Page&lt;/b&gt;&lt;br&gt;Ways to begin: a server, a project, the demo, or one of the tools. It goes when the project has a server, and is no part of the project.</source>
        <translation>&lt;b&gt;Startseite&lt;/b&gt;&lt;br&gt;Wege zu beginnen: ein Server, ein Projekt, die Demo oder eines der Werkzeuge. Sie geht, sobald das Projekt einen Server hat, und gehört nicht zum Projekt.</translation>
    </message>
    <message>
        <source>A project with live values, alarms and history.</source>
        <translation>Ein Projekt mit Livewerten, Alarmen und Historie.</translation>
    </message>
    <message>
        <source>Add a Server</source>
        <translation>Server hinzufügen</translation>
    </message>
    <message>
        <source>Begin</source>
        <translation>Beginnen</translation>
    </message>
    <message>
        <source>Its address, security and user are asked for.</source>
        <translation>Nach Adresse, Sicherheit und Benutzer wird gefragt.</translation>
    </message>
    <message>
        <source>Look at the Demo</source>
        <translation>Die Demo ansehen</translation>
    </message>
    <message>
        <source>No project has been saved or opened yet.</source>
        <translation>Es wurde noch kein Projekt gespeichert oder geöffnet.</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Open %1</source>
        <translation>%1 öffnen</translation>
    </message>
    <message>
        <source>Open a Project</source>
        <translation>Projekt öffnen</translation>
    </message>
    <message>
        <source>Recent Projects</source>
        <translation>Letzte Projekte</translation>
    </message>
    <message>
        <source>Servers and views as they were saved.</source>
        <translation>Server und Ansichten, wie sie gespeichert wurden.</translation>
    </message>
    <message>
        <source>Start page</source>
        <translation>Startseite</translation>
    </message>
    <message>
        <source>Views</source>
        <translation>Ansichten</translation>
    </message>
</context>
<context>
    <name>QlumStartup</name>
    <message>
        <source>Could not initialize OPC UA platform layer (error=0x%1).</source>
        <translation>Die OPC-UA-Plattformschicht konnte nicht gestartet werden (Fehler=0x%1).</translation>
    </message>
    <message>
        <source>Loading main application...</source>
        <translation>Das Hauptprogramm wird geladen...</translation>
    </message>
    <message>
        <source>Nothing can be written to %1. Settings hold until Tavelin ends, and unsaved changes of a project are not kept for the case of a crash.</source>
        <translation>Nach %1 kann nichts geschrieben werden. Einstellungen gelten, bis Tavelin endet, und ungespeicherte Änderungen eines Projekts werden nicht für den Fall eines Absturzes aufbewahrt.</translation>
    </message>
    <message>
        <source>Tavelin initialization error</source>
        <translation>Startfehler von Tavelin</translation>
    </message>
    <message>
        <source>The environment variable HOME is not set: settings and certificates are kept in %1.</source>
        <translation>Die Umgebungsvariable HOME ist nicht gesetzt: Einstellungen und Zertifikate liegen in %1.</translation>
    </message>
    <message>
        <source>korvanda/tavelin/</source>
        <translation>korvanda/tavelin/</translation>
    </message>
    <message>
        <source>tavelin</source>
        <translation>tavelin</translation>
    </message>
</context>
<context>
    <name>QlumStatus</name>
    <message>
        <source>Bad</source>
        <translation>Schlecht</translation>
    </message>
    <message>
        <source>Good</source>
        <translation>Gut</translation>
    </message>
    <message>
        <source>Inactive</source>
        <translation>Inaktiv</translation>
    </message>
    <message>
        <source>Uncertain</source>
        <translation>Ungewiss</translation>
    </message>
</context>
<context>
    <name>QlumStatusWords</name>
    <message>
        <source>Not sent: this server is set to %1</source>
        <translation>Nicht gesendet: Dieser Server ist auf %1 gesetzt</translation>
    </message>
    <message>
        <source>an error inside the program or the server</source>
        <translation>ein Fehler im Programm oder im Server</translation>
    </message>
    <message>
        <source>an error that nobody expected</source>
        <translation>ein Fehler, den niemand erwartet hat</translation>
    </message>
    <message>
        <source>more nodes in one call than the server takes</source>
        <translation>mehr Knoten in einem Aufruf, als der Server nimmt</translation>
    </message>
    <message>
        <source>no session is open; connect the server first</source>
        <translation>keine Sitzung ist offen; verbinden Sie zuerst den Server</translation>
    </message>
    <message>
        <source>the answer is larger than client or server allow</source>
        <translation>die Antwort ist größer, als Client oder Server erlauben</translation>
    </message>
    <message>
        <source>the certificate is expired or not yet valid</source>
        <translation>das Zertifikat ist abgelaufen oder noch nicht gültig</translation>
    </message>
    <message>
        <source>the certificate is not among the trusted ones</source>
        <translation>das Zertifikat ist nicht unter den vertrauten</translation>
    </message>
    <message>
        <source>the certificate was issued for another host</source>
        <translation>das Zertifikat wurde für einen anderen Host ausgestellt</translation>
    </message>
    <message>
        <source>the connection could not be made or was refused</source>
        <translation>die Verbindung kam nicht zustande oder wurde abgelehnt</translation>
    </message>
    <message>
        <source>the connection to the server broke</source>
        <translation>die Verbindung zum Server brach ab</translation>
    </message>
    <message>
        <source>the connection was closed while the call was under way</source>
        <translation>die Verbindung wurde während des Aufrufs geschlossen</translation>
    </message>
    <message>
        <source>the first value has not come from the device yet</source>
        <translation>der erste Wert ist noch nicht vom Gerät gekommen</translation>
    </message>
    <message>
        <source>the issuer has revoked the certificate</source>
        <translation>der Aussteller hat das Zertifikat gesperrt</translation>
    </message>
    <message>
        <source>the message security mode is not accepted</source>
        <translation>der Nachrichten-Sicherheitsmodus wird nicht angenommen</translation>
    </message>
    <message>
        <source>the method was called with too few arguments</source>
        <translation>die Methode wurde mit zu wenigen Argumenten aufgerufen</translation>
    </message>
    <message>
        <source>the name of the host cannot be resolved</source>
        <translation>der Name des Hosts kann nicht aufgelöst werden</translation>
    </message>
    <message>
        <source>the node has no such attribute</source>
        <translation>der Knoten hat kein solches Attribut</translation>
    </message>
    <message>
        <source>the object has no such method</source>
        <translation>das Objekt hat keine solche Methode</translation>
    </message>
    <message>
        <source>the security policy is not supported</source>
        <translation>die Sicherheitsrichtlinie wird nicht unterstützt</translation>
    </message>
    <message>
        <source>the server cannot keep more unfinished answers</source>
        <translation>der Server kann nicht mehr unfertige Antworten aufbewahren</translation>
    </message>
    <message>
        <source>the server cannot read the node id</source>
        <translation>der Server kann die NodeId nicht lesen</translation>
    </message>
    <message>
        <source>the server cannot read the user and password</source>
        <translation>der Server kann Benutzer und Kennwort nicht lesen</translation>
    </message>
    <message>
        <source>the server closed the secure channel</source>
        <translation>der Server hat den sicheren Kanal geschlossen</translation>
    </message>
    <message>
        <source>the server did not answer in time</source>
        <translation>der Server hat nicht rechtzeitig geantwortet</translation>
    </message>
    <message>
        <source>the server does not accept this user or password</source>
        <translation>der Server nimmt diesen Benutzer oder dieses Kennwort nicht an</translation>
    </message>
    <message>
        <source>the server does not know the endpoint of this address</source>
        <translation>der Server kennt den Endpunkt dieser Adresse nicht</translation>
    </message>
    <message>
        <source>the server does not know this session any more</source>
        <translation>der Server kennt diese Sitzung nicht mehr</translation>
    </message>
    <message>
        <source>the server does not know this subscription any more</source>
        <translation>der Server kennt diese Subscription nicht mehr</translation>
    </message>
    <message>
        <source>the server does not offer this service</source>
        <translation>der Server bietet diesen Dienst nicht an</translation>
    </message>
    <message>
        <source>the server does not support that</source>
        <translation>der Server unterstützt das nicht</translation>
    </message>
    <message>
        <source>the server has as many sessions as it can</source>
        <translation>der Server hat so viele Sitzungen, wie er kann</translation>
    </message>
    <message>
        <source>the server has as many subscriptions as it can</source>
        <translation>der Server hat so viele Subscriptions, wie er kann</translation>
    </message>
    <message>
        <source>the server has forgotten where to continue from</source>
        <translation>der Server hat vergessen, wo fortzufahren ist</translation>
    </message>
    <message>
        <source>the server has no connection to the device behind it</source>
        <translation>der Server hat keine Verbindung zum Gerät dahinter</translation>
    </message>
    <message>
        <source>the server has no such node (any more)</source>
        <translation>der Server hat keinen solchen Knoten (mehr)</translation>
    </message>
    <message>
        <source>the server has stopped</source>
        <translation>der Server hat angehalten</translation>
    </message>
    <message>
        <source>the server is shutting down</source>
        <translation>der Server fährt herunter</translation>
    </message>
    <message>
        <source>the server refuses the certificate or the security of this client</source>
        <translation>der Server lehnt das Zertifikat oder die Sicherheit dieses Clients ab</translation>
    </message>
    <message>
        <source>the session was closed</source>
        <translation>die Sitzung wurde geschlossen</translation>
    </message>
    <message>
        <source>the value has another data type than the node</source>
        <translation>der Wert hat einen anderen Datentyp als der Knoten</translation>
    </message>
    <message>
        <source>the value is outside what the server allows</source>
        <translation>der Wert liegt außerhalb dessen, was der Server erlaubt</translation>
    </message>
    <message>
        <source>the value may not be read</source>
        <translation>der Wert darf nicht gelesen werden</translation>
    </message>
    <message>
        <source>the value may not be written</source>
        <translation>der Wert darf nicht geschrieben werden</translation>
    </message>
    <message>
        <source>there is no connection to the server at the moment</source>
        <translation>im Moment gibt es keine Verbindung zum Server</translation>
    </message>
    <message>
        <source>there was not enough memory</source>
        <translation>der Speicher reichte nicht</translation>
    </message>
    <message>
        <source>this user may not do that</source>
        <translation>dieser Benutzer darf das nicht</translation>
    </message>
</context>
<context>
    <name>QlumStorePage</name>
    <message numerus="yes">
        <source>%1 of %Ln entries</source>
        <translation>
            <numerusform>%1 von %Ln Eintrag</numerusform>
            <numerusform>%1 von %Ln Einträgen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln entries</source>
        <translation>
            <numerusform>%Ln Eintrag</numerusform>
            <numerusform>%Ln Einträge</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln entries; reading was cancelled</source>
        <translation>
            <numerusform>%Ln Eintrag; das Lesen wurde abgebrochen</numerusform>
            <numerusform>%Ln Einträge; das Lesen wurde abgebrochen</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Filter:</source>
        <translation>&amp;Filter:</translation>
    </message>
    <message>
        <source>&lt;b&gt;%1&lt;/b&gt;&lt;br&gt;The files of this store. Double-click one to open it; drop files here to add them, or drag a row to where it is wanted.</source>
        <translation>&lt;b&gt;%1&lt;/b&gt;&lt;br&gt;Die Dateien dieses Speichers. Ein Doppelklick öffnet eine; hierher gezogene Dateien werden hinzugefügt, und eine Zeile kann dorthin gezogen werden, wo sie gebraucht wird.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Open Certificate Location&lt;/b&gt;&lt;br&gt;Shows the folder of this store in the file manager.</source>
        <translation>&lt;b&gt;Zertifikatsordner öffnen&lt;/b&gt;&lt;br&gt;Zeigt den Ordner dieses Speichers im Dateimanager.</translation>
    </message>
    <message>
        <source>Filter of %1</source>
        <translation>Filter von %1</translation>
    </message>
    <message>
        <source>Nothing here yet. Drop files on the table to add them.</source>
        <translation>Hier ist noch nichts. Legen Sie Dateien auf der Tabelle ab, um sie hinzuzufügen.</translation>
    </message>
    <message>
        <source>Nothing here yet; drop files on the table to add them</source>
        <translation>Hier ist noch nichts; legen Sie Dateien auf der Tabelle ab, um sie hinzuzufügen</translation>
    </message>
    <message>
        <source>Open Certificate &amp;Location</source>
        <translation>Zertifikats&amp;ordner öffnen</translation>
    </message>
    <message>
        <source>Open the folder %1</source>
        <translation>Den Ordner %1 öffnen</translation>
    </message>
    <message>
        <source>Reading %1</source>
        <translation>%1 wird gelesen</translation>
    </message>
    <message>
        <source>Show the rows only that have this text in one of their columns</source>
        <translation>Nur die Zeilen zeigen, die diesen Text in einer ihrer Spalten haben</translation>
    </message>
    <message>
        <source>Text in any column</source>
        <translation>Text in beliebiger Spalte</translation>
    </message>
    <message>
        <source>The desktop has no program to open &apos;%1&apos; with.</source>
        <translation>Der Desktop hat kein Programm, um „%1“ zu öffnen.</translation>
    </message>
</context>
<context>
    <name>QlumStructureModel</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>One of these is there at a time.</source>
        <translation>Jeweils eines davon ist vorhanden.</translation>
    </message>
    <message>
        <source>The fields cannot be put together: %1</source>
        <translation>Die Felder können nicht zusammengesetzt werden: %1</translation>
    </message>
    <message>
        <source>This may be left away.</source>
        <translation>Das darf fehlen.</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Values of several types may be given here.</source>
        <translation>Hier dürfen Werte mehrerer Typen stehen.</translation>
    </message>
    <message>
        <source>not taken apart: %1</source>
        <translation>nicht zerlegt: %1</translation>
    </message>
</context>
<context>
    <name>QlumStructureNode</name>
    <message>
        <source>%1 bytes</source>
        <translation>%1 Bytes</translation>
    </message>
    <message>
        <source>%1 more elements; Open shows them all.</source>
        <translation>%1 weitere Elemente; „Öffnen“ zeigt alle.</translation>
    </message>
    <message>
        <source>Here are more than %1 levels of values within values.</source>
        <translation>Hier sind mehr als %1 Ebenen von Werten in Werten.</translation>
    </message>
    <message>
        <source>It is nested too deep, or its definition contains itself.</source>
        <translation>Es ist zu tief verschachtelt, oder seine Definition enthält sich selbst.</translation>
    </message>
    <message>
        <source>Its bytes do not fit the definition of %1.</source>
        <translation>Seine Bytes passen nicht zur Definition von %1.</translation>
    </message>
    <message>
        <source>Not taken apart</source>
        <translation>Nicht zerlegt</translation>
    </message>
    <message>
        <source>There is no definition of a type within it here.</source>
        <translation>Für einen Typ darin gibt es hier keine Definition.</translation>
    </message>
    <message>
        <source>There is no definition of its type here.</source>
        <translation>Für seinen Typ gibt es hier keine Definition.</translation>
    </message>
    <message>
        <source>Type id</source>
        <translation>Typ-Id</translation>
    </message>
    <message>
        <source>XML</source>
        <translation>XML</translation>
    </message>
</context>
<context>
    <name>QlumStructurePage</name>
    <message>
        <source>%1: not taken apart. %2</source>
        <translation>%1: nicht zerlegt. %2</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>Ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>&lt;b&gt;Open&lt;/b&gt;&lt;br&gt;Shows the field in a window of its own: arrays with all their elements, long texts, other structures.</source>
        <translation>&lt;b&gt;Öffnen&lt;/b&gt;&lt;br&gt;Zeigt das Feld in einem eigenen Fenster: Arrays mit allen Elementen, lange Texte, andere Strukturen.</translation>
    </message>
    <message>
        <source>Begin with an empty value of another type</source>
        <translation>Mit einem leeren Wert eines anderen Typs beginnen</translation>
    </message>
    <message>
        <source>Edit the field in a window of its own</source>
        <translation>Das Feld in einem eigenen Fenster bearbeiten</translation>
    </message>
    <message>
        <source>Fields</source>
        <translation>Felder</translation>
    </message>
    <message>
        <source>Other Type</source>
        <translation>Anderer Typ</translation>
    </message>
    <message>
        <source>There are no fields.</source>
        <translation>Es gibt keine Felder.</translation>
    </message>
</context>
<context>
    <name>QlumStructureTree</name>
    <message numerus="yes">
        <source>%1, %n byte(s)</source>
        <translation>
            <numerusform>%1, %n Byte</numerusform>
            <numerusform>%1, %n Bytes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumSubscriptionTable</name>
    <message>
        <source> (Diagnostic subscription)</source>
        <translation> (Diagnose-Subscription)</translation>
    </message>
    <message>
        <source>A subscription of this session</source>
        <translation>Eine Subscription dieser Sitzung</translation>
    </message>
    <message>
        <source>Disabled Items</source>
        <translation>Deaktivierte Elemente</translation>
    </message>
    <message>
        <source>Discarded</source>
        <translation>Verworfen</translation>
    </message>
    <message>
        <source>Items</source>
        <translation>Elemente</translation>
    </message>
    <message>
        <source>Late Publishes</source>
        <translation>Verspätete Publishes</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>Notifications</translation>
    </message>
    <message>
        <source>Notifications per Second</source>
        <translation>Notifications pro Sekunde</translation>
    </message>
    <message>
        <source>Priority</source>
        <translation>Priorität</translation>
    </message>
    <message>
        <source>Publishing</source>
        <translation>Senden</translation>
    </message>
    <message>
        <source>Publishing Interval [ms]</source>
        <translation>Sendeintervall [ms]</translation>
    </message>
    <message>
        <source>Queue Overflows</source>
        <translation>Überläufe</translation>
    </message>
    <message>
        <source>Session</source>
        <translation>Sitzung</translation>
    </message>
    <message>
        <source>Subscription</source>
        <translation>Subscription</translation>
    </message>
    <message>
        <source>Unacknowledged</source>
        <translation>Unquittiert</translation>
    </message>
    <message>
        <source>no</source>
        <translation>nein</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
</context>
<context>
    <name>QlumSupportDialog</name>
    <message>
        <source>&lt;b&gt;Parts of the report&lt;/b&gt;&lt;br&gt;What is checked is written.</source>
        <translation>&lt;b&gt;Teile des Berichts&lt;/b&gt;&lt;br&gt;Was angekreuzt ist, wird geschrieben.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Text of the part&lt;/b&gt;&lt;br&gt;Just as it is written.</source>
        <translation>&lt;b&gt;Text des Teils&lt;/b&gt;&lt;br&gt;Genau so, wie er geschrieben wird.</translation>
    </message>
    <message>
        <source>Parts of the report</source>
        <translation>Teile des Berichts</translation>
    </message>
    <message>
        <source>Report for Support</source>
        <translation>Bericht für den Support</translation>
    </message>
    <message>
        <source>Save Report</source>
        <translation>Bericht speichern</translation>
    </message>
    <message>
        <source>Text of the part</source>
        <translation>Text des Teils</translation>
    </message>
    <message>
        <source>The report could not be written.</source>
        <translation>Der Bericht konnte nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>This is what the report contains. Passwords, keys and user names are left out; take away what you do not want to pass on.</source>
        <translation>Das enthält der Bericht. Kennwörter, Schlüssel und Benutzernamen sind weggelassen; nehmen Sie weg, was Sie nicht weitergeben möchten.</translation>
    </message>
    <message>
        <source>Zip Archives (*.zip)</source>
        <translation>Zip-Archive (*.zip)</translation>
    </message>
</context>
<context>
    <name>QlumSupportReport</name>
    <message>
        <source>Crash</source>
        <translation>Absturz</translation>
    </message>
    <message>
        <source>Diagnosed connections</source>
        <translation>Diagnostizierte Verbindungen</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Project</source>
        <translation>Projekt</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Trace</source>
        <translation>Trace</translation>
    </message>
    <message>
        <source>Versions</source>
        <translation>Versionen</translation>
    </message>
</context>
<context>
    <name>QlumSweep</name>
    <message>
        <source>%1 us</source>
        <translation>%1 us</translation>
    </message>
    <message>
        <source>A call costs %1, and %2 for each node.</source>
        <translation>Ein Aufruf kostet %1, und %2 je Knoten.</translation>
    </message>
    <message>
        <source>From %1 node(s) a call on, more gain less than a tenth.</source>
        <translation>Ab %1 Knoten je Aufruf bringen mehr weniger als ein Zehntel.</translation>
    </message>
    <message>
        <source>No step of the sweep succeeded.</source>
        <translation>Kein Schritt der Variation war erfolgreich.</translation>
    </message>
    <message>
        <source>The largest call, of %1 nodes, is the best.</source>
        <translation>Der größte Aufruf mit %1 Knoten ist der beste.</translation>
    </message>
    <message>
        <source>The largest call, of %1 nodes, is the best: only from %2 on more would gain less than a tenth.</source>
        <translation>Der größte Aufruf mit %1 Knoten ist der beste: Erst ab %2 brächten mehr weniger als ein Zehntel.</translation>
    </message>
    <message>
        <source>The steps do not lie on a line, so take that as a rough figure.</source>
        <translation>Die Schritte liegen nicht auf einer Geraden; nehmen Sie das als grobe Zahl.</translation>
    </message>
    <message>
        <source>With %1 call(s) outstanding the server answers as many as it can, within a tenth: more do not help.</source>
        <translation>Mit %1 gleichzeitigen Aufrufen antwortet der Server auf so viele, wie er kann, auf ein Zehntel genau: Mehr helfen nicht.</translation>
    </message>
    <message>
        <source>With %1 calls outstanding, the most that were tried, the server answers most.</source>
        <translation>Mit %1 gleichzeitigen Aufrufen, den meisten versuchten, antwortet der Server am meisten.</translation>
    </message>
</context>
<context>
    <name>QlumTable</name>
    <message>
        <source>&apos;%1&apos; cannot be written: %2</source>
        <translation>„%1“ kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>&lt;b&gt;Export&lt;/b&gt;&lt;br&gt;Writes the rows and columns that are shown to a file of comma separated values, for spreadsheets.</source>
        <translation>&lt;b&gt;Exportieren&lt;/b&gt;&lt;br&gt;Schreibt die gezeigten Zeilen und Spalten in eine Datei kommagetrennter Werte, für Tabellenprogramme.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Comma separated values (*.csv);;All files (*)</source>
        <translation>Kommagetrennte Werte (*.csv);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>E&amp;xport...</source>
        <translation>E&amp;xportieren...</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>Export the rows as comma separated values</source>
        <translation>Die Zeilen als kommagetrennte Werte exportieren</translation>
    </message>
    <message>
        <source>Writing rows...</source>
        <translation>Zeilen werden geschrieben...</translation>
    </message>
</context>
<context>
    <name>QlumTavelin</name>
    <message>
        <source>&lt;b&gt;Address Space&lt;/b&gt;&lt;br&gt;This window shows the address space of the current selected server. You can switch between the servers in the project window.</source>
        <translation>&lt;b&gt;Adressraum&lt;/b&gt;&lt;br&gt;Dieses Fenster zeigt den Adressraum des gewählten Servers. Im Projektfenster wechseln Sie zwischen den Servern.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Find Node&lt;/b&gt;&lt;br&gt;This window searches the nodes of a server, and shows what was found. Nodes can be dragged from here into other views.</source>
        <translation>&lt;b&gt;Knoten suchen&lt;/b&gt;&lt;br&gt;Dieses Fenster sucht in den Knoten eines Servers und zeigt die gefundenen. Sie lassen sich von hier in andere Ansichten ziehen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Log&lt;/b&gt;&lt;br&gt;This window shows what Tavelin did and what went wrong, the newest entry last.</source>
        <translation>&lt;b&gt;Protokoll&lt;/b&gt;&lt;br&gt;Dieses Fenster zeigt, was Tavelin getan hat und was schiefging, der neueste Eintrag steht zuletzt.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Project&lt;/b&gt;&lt;br&gt;In this window you can manage multiple server connections and documents.</source>
        <translation>&lt;b&gt;Projekt&lt;/b&gt;&lt;br&gt;In diesem Fenster verwalten Sie mehrere Serververbindungen und Dokumente.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Services&lt;/b&gt;&lt;br&gt;This window shows the service calls of all sessions, while that is switched on: how long they took, how large they were and what was in them.</source>
        <translation>&lt;b&gt;Dienste&lt;/b&gt;&lt;br&gt;Dieses Fenster zeigt die Dienstaufrufe aller Sitzungen, solange das eingeschaltet ist: wie lange sie dauerten, wie groß sie waren und was darin stand.</translation>
    </message>
    <message>
        <source>Address Space</source>
        <translation>Adressraum</translation>
    </message>
    <message>
        <source>Configure Tavelin</source>
        <translation>Tavelin einstellen</translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>Dokumente</translation>
    </message>
    <message>
        <source>Find Node</source>
        <translation>Knoten suchen</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Loading plugins...</source>
        <translation>Plugins werden geladen...</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Log Files (*.log)</source>
        <translation>Protokolldateien (*.log)</translation>
    </message>
    <message>
        <source>Open file %1 for writing returned %2</source>
        <translation>Öffnen der Datei %1 zum Schreiben ergab %2</translation>
    </message>
    <message>
        <source>Project</source>
        <translation>Projekt</translation>
    </message>
    <message>
        <source>Save Log As</source>
        <translation>Protokoll speichern unter</translation>
    </message>
    <message>
        <source>Services</source>
        <translation>Dienste</translation>
    </message>
    <message>
        <source>Tavelin is ready to use.</source>
        <translation>Tavelin ist bereit.</translation>
    </message>
    <message>
        <source>The nodes come from another window of the program. Drag them from an address space of this one.</source>
        <translation>Die Knoten kommen aus einem anderen Fenster des Programms. Ziehen Sie sie aus einem Adressraum von diesem.</translation>
    </message>
    <message>
        <source>The settings cannot be written to %1. They hold until Tavelin ends.</source>
        <translation>Die Einstellungen können nicht nach %1 geschrieben werden. Sie gelten, bis Tavelin endet.</translation>
    </message>
</context>
<context>
    <name>QlumTextPattern</name>
    <message>
        <source>%1 (at letter %2)</source>
        <translation>%1 (bei Zeichen %2)</translation>
    </message>
</context>
<context>
    <name>QlumTimePage</name>
    <message>
        <source> x 100 ns</source>
        <translation> x 100 ns</translation>
    </message>
    <message>
        <source>&amp;Now</source>
        <translation>&amp;Jetzt</translation>
    </message>
    <message>
        <source>+ </source>
        <translation>+ </translation>
    </message>
    <message>
        <source>Below a millisecond</source>
        <translation>Unter einer Millisekunde</translation>
    </message>
    <message>
        <source>Date and time</source>
        <translation>Datum und Zeit</translation>
    </message>
    <message>
        <source>How it is shown; it is always sent as UTC</source>
        <translation>Wie sie gezeigt wird; gesendet wird immer UTC</translation>
    </message>
    <message>
        <source>Local time</source>
        <translation>Ortszeit</translation>
    </message>
    <message>
        <source>Local time: %1</source>
        <translation>Ortszeit: %1</translation>
    </message>
    <message>
        <source>N&amp;ot Set</source>
        <translation>N&amp;icht gesetzt</translation>
    </message>
    <message>
        <source>Not set</source>
        <translation>Nicht gesetzt</translation>
    </message>
    <message>
        <source>Now</source>
        <translation>Jetzt</translation>
    </message>
    <message>
        <source>Takes the date that stands for none, 1601-01-01</source>
        <translation>Nimmt das Datum, das für keines steht, 1601-01-01</translation>
    </message>
    <message>
        <source>Takes the present time</source>
        <translation>Nimmt die jetzige Zeit</translation>
    </message>
    <message>
        <source>Time zone</source>
        <translation>Zeitzone</translation>
    </message>
    <message>
        <source>UTC</source>
        <translation>UTC</translation>
    </message>
    <message>
        <source>UTC: %1</source>
        <translation>UTC: %1</translation>
    </message>
    <message>
        <source>What the time has below a millisecond, in steps of 100 ns</source>
        <translation>Was die Zeit unter einer Millisekunde hat, in Schritten von 100 ns</translation>
    </message>
    <message>
        <source>Year, month, day, hour, minute, second and millisecond</source>
        <translation>Jahr, Monat, Tag, Stunde, Minute, Sekunde und Millisekunde</translation>
    </message>
    <message>
        <source>no value yet</source>
        <translation>noch kein Wert</translation>
    </message>
    <message>
        <source>not set</source>
        <translation>nicht gesetzt</translation>
    </message>
</context>
<context>
    <name>QlumTipWindow</name>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>&amp;Next Tip</source>
        <translation>&amp;Nächster Tipp</translation>
    </message>
    <message>
        <source>&amp;Previous Tip</source>
        <translation>&amp;Voriger Tipp</translation>
    </message>
    <message>
        <source>&amp;Show tips at start-up</source>
        <translation>&amp;Tipps beim Start zeigen</translation>
    </message>
    <message>
        <source>Tip</source>
        <translation>Tipp</translation>
    </message>
    <message>
        <source>Tip file is missing.</source>
        <translation>Die Tippdatei fehlt.</translation>
    </message>
    <message>
        <source>Tip of the day</source>
        <translation>Tipp des Tages</translation>
    </message>
    <message>
        <source>tips_en.txt</source>
        <translation>tips_de.txt</translation>
    </message>
</context>
<context>
    <name>QlumTlsOverrules</name>
    <message>
        <source>What was overruled of a TLS certificate could not be written to &apos;%1&apos;: %2</source>
        <translation>Was bei einem TLS-Zertifikat übergangen wurde, konnte nicht nach „%1“ geschrieben werden: %2</translation>
    </message>
</context>
<context>
    <name>QlumTlsTrust</name>
    <message>
        <source>TLS Certificate Already Trusted</source>
        <translation>Dem TLS-Zertifikat wird bereits vertraut</translation>
    </message>
    <message>
        <source>The TLS certificate could not be written to &apos;%1&apos;: %2</source>
        <translation>Das TLS-Zertifikat konnte nicht nach „%1“ geschrieben werden: %2</translation>
    </message>
    <message>
        <source>The TLS certificate of server &apos;%1&apos; is already in Tavelin&apos;s trust list but validation still fails. Please check Tavelin&apos;s log files for details about the reason for this error.

The certificate location is: %2</source>
        <translation>Das TLS-Zertifikat des Servers „%1“ ist bereits in Tavelins Vertrauensliste, aber die Prüfung schlägt weiterhin fehl. Den Grund nennen Tavelins Protokolldateien.

Das Zertifikat liegt hier: %2</translation>
    </message>
</context>
<context>
    <name>QlumTlsTrustQuestion</name>
    <message>
        <source>The TLS certificate of server &apos;%1&apos; is not trusted: &apos;%2&apos;</source>
        <translation>Dem TLS-Zertifikat des Servers „%1“ wird nicht vertraut: „%2“</translation>
    </message>
</context>
<context>
    <name>QlumTraceSettings</name>
    <message>
        <source>Could not init trace. Please recheck trace settings under Settings-&gt;Configure Tavelin...</source>
        <translation>Der Trace konnte nicht gestartet werden. Bitte prüfen Sie die Trace-Einstellungen unter Einstellungen-&gt;Tavelin einstellen...</translation>
    </message>
    <message>
        <source>Invalid %1 value &apos;%2&apos;; defaulting to &apos;%3&apos;</source>
        <translation>Ungültiger Wert „%2“ für %1; verwendet wird „%3“</translation>
    </message>
    <message>
        <source>TraceSettings</source>
        <translation>TraceSettings</translation>
    </message>
</context>
<context>
    <name>QlumTraceWords</name>
    <message>
        <source>Error: Number of acknowledgement results (%1) does not match number of acknowledgements (%2)</source>
        <translation>Fehler: Die Zahl der Ergebnisse von Bestätigungen (%1) passt nicht zur Zahl der Bestätigungen (%2)</translation>
    </message>
    <message>
        <source>Error: Publish failed [status=%1]</source>
        <translation>Fehler: Publish ist fehlgeschlagen [status=%1]</translation>
    </message>
    <message>
        <source>Error: SessionCallback - Stack sent callback with status [status=%1]</source>
        <translation>Fehler: SessionCallback - der Stack meldet den Status [status=%1]</translation>
    </message>
    <message>
        <source>Error: SessionCallback - a callback threw &apos;%1&apos;</source>
        <translation>Fehler: SessionCallback - ein Rückruf endete mit „%1“</translation>
    </message>
    <message>
        <source>Error: Subscription acknowledgement (SubscriptionId=%1,SequenceNumber=%2) returned status %3</source>
        <translation>Fehler: Die Bestätigung an die Subscription (SubscriptionId=%1,SequenceNumber=%2) ergab den Status %3</translation>
    </message>
    <message>
        <source>Error: SubscriptionCallback - a callback threw &apos;%1&apos;</source>
        <translation>Fehler: SubscriptionCallback - ein Rückruf endete mit „%1“</translation>
    </message>
    <message>
        <source>Error: UaSession - a request for notifications was not taken [Session=%1] [status=%2]</source>
        <translation>Fehler: UaSession - eine Anfrage nach Notifications wurde nicht angenommen [Session=%1] [status=%2]</translation>
    </message>
    <message>
        <source>Error: UaSession - a turn of the session thread ended with &apos;%1&apos; [Session=%2]</source>
        <translation>Fehler: UaSession - ein Durchlauf des Sitzungs-Threads endete mit „%1“ [Session=%2]</translation>
    </message>
    <message>
        <source>Error: UaSession - cannot create a channel [ret=%1]</source>
        <translation>Fehler: UaSession - ein Kanal kann nicht angelegt werden [ret=%1]</translation>
    </message>
    <message>
        <source>Error: UaSession - connection lost [Session=%1]</source>
        <translation>Fehler: UaSession - Verbindung verloren [Session=%1]</translation>
    </message>
    <message>
        <source>Error: UaSession - reading the namespace table failed [status=%1]</source>
        <translation>Fehler: UaSession - das Lesen der Namensraumtabelle ist fehlgeschlagen [status=%1]</translation>
    </message>
    <message>
        <source>Error: UaSession - the server refused the user, he is not tried again [Session=%1]</source>
        <translation>Fehler: UaSession - der Server hat den Benutzer abgelehnt, er wird nicht erneut versucht [Session=%1]</translation>
    </message>
    <message>
        <source>Error: UaSession::%1 - number of diagnostic infos does not match number of requests</source>
        <translation>Fehler: UaSession::%1 - die Zahl der Diagnoseangaben passt nicht zur Zahl der Anfragen</translation>
    </message>
    <message>
        <source>Error: UaSession::%1 - number of results does not match number of requests</source>
        <translation>Fehler: UaSession::%1 - die Zahl der Ergebnisse passt nicht zur Zahl der Anfragen</translation>
    </message>
    <message>
        <source>Error: UaSession::loadDataTypeDictionaries failed [status=%1]</source>
        <translation>Fehler: UaSession::loadDataTypeDictionaries ist fehlgeschlagen [status=%1]</translation>
    </message>
    <message>
        <source>Error: UaSessionPrivate::%1 - Server sent invalid extension object for notification</source>
        <translation>Fehler: UaSessionPrivate::%1 - der Server schickte ein ungültiges ExtensionObject als Notification</translation>
    </message>
    <message>
        <source>Error: UaSessionPrivate::%1 - Server sent unknown extension object (ID=%2) for notification</source>
        <translation>Fehler: UaSessionPrivate::%1 - der Server schickte ein unbekanntes ExtensionObject (ID=%2) als Notification</translation>
    </message>
    <message>
        <source>Error: UaSessionPrivate::activateSession - can&apos;t find %1 in endpoint description</source>
        <translation>Fehler: UaSessionPrivate::activateSession - %1 steht nicht in der Beschreibung des Endpunkts</translation>
    </message>
    <message>
        <source>Error: UaSessionPrivate::activateSession - no endpoint matching the session security settings</source>
        <translation>Fehler: UaSessionPrivate::activateSession - kein Endpunkt passt zu den Sicherheitseinstellungen der Sitzung</translation>
    </message>
    <message>
        <source>Error: UaSessionPrivate::doRepublishAfterReconnect - Notification returned unexpected SequenceNumber (expected=%1, received=%2)</source>
        <translation>Fehler: UaSessionPrivate::doRepublishAfterReconnect - unerwartete SequenceNumber einer Notification (erwartet %1, erhalten %2)</translation>
    </message>
    <message>
        <source>Error: UaSessionPrivate::publishCallback - KeepAlive SequenceNumber (%1) is contained in AvailableSequenceNumbers</source>
        <translation>Fehler: UaSessionPrivate::publishCallback - die SequenceNumber %1 des KeepAlive steht in AvailableSequenceNumbers</translation>
    </message>
    <message>
        <source>Error: UaSessionPrivate::publishCallback - KeepAlive returned unexpected SequenceNumber (expected=%1, received=%2)</source>
        <translation>Fehler: UaSessionPrivate::publishCallback - unerwartete SequenceNumber eines KeepAlive (erwartet %1, erhalten %2)</translation>
    </message>
    <message>
        <source>Error: UaSessionPrivate::publishCallback - Notification returned unexpected SequenceNumber (expected=%1, received=%2)</source>
        <translation>Fehler: UaSessionPrivate::publishCallback - unerwartete SequenceNumber einer Notification (erwartet %1, erhalten %2)</translation>
    </message>
    <message>
        <source>Error: UaSessionPrivate::publishCallback - Server sent invalid SubscriptionId %1</source>
        <translation>Fehler: UaSessionPrivate::publishCallback - der Server schickte die ungültige SubscriptionId %1</translation>
    </message>
    <message>
        <source>Error: UaSessionPrivate::publishCallback - Subscription not longer valid</source>
        <translation>Fehler: UaSessionPrivate::publishCallback - die Subscription gilt nicht mehr</translation>
    </message>
    <message>
        <source>Host name in server certificate does not match hostname the client connected to</source>
        <translation>Der Hostname im Zertifikat des Servers ist nicht der, mit dem sich Tavelin verbunden hat</translation>
    </message>
    <message>
        <source>Nonce returned by server is too short (len=%1)</source>
        <translation>Die Nonce des Servers ist zu kurz (%1 Bytes)</translation>
    </message>
    <message>
        <source>Nonce returned by server is too short (len=%1), closing session</source>
        <translation>Die Nonce des Servers ist zu kurz (%1 Bytes), die Sitzung wird geschlossen</translation>
    </message>
    <message>
        <source>Server certificate validation failed with error &apos;%1&apos;</source>
        <translation>Die Prüfung des Serverzertifikats ist mit dem Fehler „%1“ fehlgeschlagen</translation>
    </message>
    <message>
        <source>Server returned the same nonce as last time, closing session</source>
        <translation>Der Server schickte dieselbe Nonce wie beim letzten Mal, die Sitzung wird geschlossen</translation>
    </message>
    <message>
        <source>Split server certificate chain failed with error &apos;%1&apos;</source>
        <translation>Das Zerlegen der Zertifikatskette des Servers ist mit dem Fehler „%1“ fehlgeschlagen</translation>
    </message>
    <message>
        <source>The server certificate is empty</source>
        <translation>Das Zertifikat des Servers ist leer</translation>
    </message>
    <message>
        <source>The server certificate public key is empty</source>
        <translation>Der öffentliche Schlüssel im Zertifikat des Servers ist leer</translation>
    </message>
    <message>
        <source>The server&apos;s application signature is invalid</source>
        <translation>Die Signatur der Serveranwendung ist ungültig</translation>
    </message>
    <message>
        <source>UaSessionPrivate::doServerStatusCheck failed [Session=%1] [status=%2]</source>
        <translation>UaSessionPrivate::doServerStatusCheck ist fehlgeschlagen [Session=%1] [status=%2]</translation>
    </message>
    <message>
        <source>Warning: Could not find suitable SecurityPolicy for assembling X509IdentityToken</source>
        <translation>Warnung: Keine passende Sicherheitsrichtlinie für das X509IdentityToken gefunden</translation>
    </message>
    <message>
        <source>Warning: Notifications missing, lastSequenceNumber=%1 newSequenceNumber=%2</source>
        <translation>Warnung: Es fehlen Notifications, lastSequenceNumber=%1 newSequenceNumber=%2</translation>
    </message>
    <message>
        <source>Warning: Server time (%1) is more than 30 Minutes distinct from local system time</source>
        <translation>Warnung: Die Uhrzeit des Servers (%1) weicht mehr als 30 Minuten von der dieses Rechners ab</translation>
    </message>
    <message>
        <source>Warning: The server&apos;s endpoints are others than those that discovery returned</source>
        <translation>Warnung: Der Server nennt andere Endpunkte als die Suche</translation>
    </message>
    <message>
        <source>Warning: UaSession - reading the limits of the server failed [Session=%1] [status=%2]</source>
        <translation>Warnung: UaSession - das Lesen der Grenzen des Servers ist fehlgeschlagen [Session=%1] [status=%2]</translation>
    </message>
    <message>
        <source>Warning: browseBatch - node %1: %2</source>
        <translation>Warnung: browseBatch - Knoten %1: %2</translation>
    </message>
</context>
<context>
    <name>QlumTranslations</name>
    <message>
        <source>The translation %1 cannot be read.</source>
        <translation>Die Übersetzung %1 kann nicht gelesen werden.</translation>
    </message>
</context>
<context>
    <name>QlumTreeFinder</name>
    <message>
        <source>%1 cannot be reached from the root, or is not there.</source>
        <translation>%1 ist von der Wurzel aus nicht zu erreichen oder nicht vorhanden.</translation>
    </message>
    <message>
        <source>A part of a name in the opened tree; or a node id (ns=2;s=Pump) or a browse path (/Objects/2:Plant) to go to</source>
        <translation>Ein Teil eines Namens im geöffneten Baum; oder eine NodeId (ns=2;s=Pump) oder ein Pfad (/Objects/2:Plant), wohin gesprungen wird</translation>
    </message>
    <message>
        <source>Closes the bar</source>
        <translation>Schließt die Leiste</translation>
    </message>
    <message>
        <source>Find or go to</source>
        <translation>Suchen oder gehe zu</translation>
    </message>
    <message>
        <source>Following a browse path</source>
        <translation>Einem Pfad folgen</translation>
    </message>
    <message>
        <source>Following the path...</source>
        <translation>Dem Pfad wird gefolgt...</translation>
    </message>
    <message>
        <source>Looks for it among all nodes of the server, opened or not</source>
        <translation>Sucht unter allen Knoten des Servers danach, ob geöffnet oder nicht</translation>
    </message>
    <message>
        <source>Name, node id or /browse path</source>
        <translation>Name, NodeId oder /Pfad</translation>
    </message>
    <message>
        <source>No opened node has this in its name. Press &quot;On Server&quot; to look for it everywhere.</source>
        <translation>Kein geöffneter Knoten hat das im Namen. Drücken Sie „Auf dem Server“, um überall zu suchen.</translation>
    </message>
    <message>
        <source>On Server</source>
        <translation>Auf dem Server</translation>
    </message>
    <message>
        <source>The next one</source>
        <translation>Der nächste</translation>
    </message>
    <message>
        <source>The one before</source>
        <translation>Der vorige</translation>
    </message>
    <message>
        <source>The server has nothing at this path. Names of other namespaces than 0 need their index: /Objects/2:Plant.</source>
        <translation>Der Server hat an diesem Pfad nichts. Namen anderer Namensräume als 0 brauchen ihren Index: /Objects/2:Plant.</translation>
    </message>
</context>
<context>
    <name>QlumTrendExtras</name>
    <message>
        <source> %</source>
        <translation> %</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>&amp;Modified values</source>
        <translation>&amp;Geänderte Werte</translation>
    </message>
    <message>
        <source>&amp;Processed values</source>
        <translation>&amp;Verarbeitete Werte</translation>
    </message>
    <message>
        <source>Aggregate:</source>
        <translation>Aggregat:</translation>
    </message>
    <message>
        <source>An interval with at least so many bad values is bad.</source>
        <translation>Ein Intervall mit mindestens so vielen schlechten Werten ist schlecht.</translation>
    </message>
    <message>
        <source>An interval with at least so many good values is good.</source>
        <translation>Ein Intervall mit mindestens so vielen guten Werten ist gut.</translation>
    </message>
    <message>
        <source>As the server is configured</source>
        <translation>Wie der Server eingestellt ist</translation>
    </message>
    <message>
        <source>Bad from:</source>
        <translation>Schlecht ab:</translation>
    </message>
    <message>
        <source>Besides Raw Values</source>
        <translation>Neben Rohwerten</translation>
    </message>
    <message>
        <source>Beyond the last value the line goes on as it went before, not level.</source>
        <translation>Nach dem letzten Wert geht die Linie weiter wie zuvor, nicht waagrecht.</translation>
    </message>
    <message>
        <source>Extrapolate sloped</source>
        <translation>Schräg extrapolieren</translation>
    </message>
    <message>
        <source>Good from:</source>
        <translation>Gut ab:</translation>
    </message>
    <message>
        <source>How much of the time one processed value stands for.</source>
        <translation>Für wie viel Zeit ein verarbeiteter Wert steht.</translation>
    </message>
    <message>
        <source>I&amp;nterval:</source>
        <translation>Interva&amp;ll:</translation>
    </message>
    <message>
        <source>Reads an aggregate of each variable as well, and draws it beside the raw curve.</source>
        <translation>Liest zu jeder Variablen auch ein Aggregat und zeichnet es neben die Rohkurve.</translation>
    </message>
    <message>
        <source>Reads what somebody has replaced or deleted, with who did it and when, into the list of modified values.</source>
        <translation>Liest, was jemand ersetzt oder gelöscht hat, mit wem und wann, in die Liste der geänderten Werte.</translation>
    </message>
    <message>
        <source>The server decides about bad and uncertain values. Switch it off to decide yourself.</source>
        <translation>Der Server entscheidet über schlechte und ungewisse Werte. Schalten Sie es aus, um selbst zu entscheiden.</translation>
    </message>
    <message>
        <source>Treat uncertain values as bad</source>
        <translation>Ungewisse Werte als schlecht behandeln</translation>
    </message>
    <message>
        <source>Uncertain values count as bad ones in an interval.</source>
        <translation>Ungewisse Werte zählen in einem Intervall als schlechte.</translation>
    </message>
    <message>
        <source>What the servers calculate of the values of each interval. The list is that of the servers of these variables.</source>
        <translation>Was die Server aus den Werten jedes Intervalls berechnen. Die Liste ist die der Server dieser Variablen.</translation>
    </message>
</context>
<context>
    <name>QlumTrendItemModel</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>%1 (%2): %3</source>
        <translation>%1 (%2): %3</translation>
    </message>
    <message>
        <source>Added item already showing in current HistoryTrendView.</source>
        <translation>Das hinzugefügte Element wird in diesem Historientrend schon gezeigt.</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Historie</translation>
    </message>
    <message>
        <source>Node Id</source>
        <translation>NodeId</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Session object invalid.</source>
        <translation>Sitzungsobjekt ungültig.</translation>
    </message>
</context>
<context>
    <name>QlumTrendNodesReader</name>
    <message>
        <source>Added item does not support historizing.</source>
        <translation>Das hinzugefügte Element unterstützt keine Historie.</translation>
    </message>
    <message>
        <source>False</source>
        <translation>Falsch</translation>
    </message>
    <message>
        <source>Get stepped property of node %1 failed with status code %2.</source>
        <translation>Ermitteln der Eigenschaft Stepped von Knoten %1 mit Statuscode %2 fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Read UserAccessLevel attribute on node %1 failed with status code %2.</source>
        <translation>Lesen des Attributs UserAccessLevel an Knoten %1 mit Statuscode %2 fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Read failed with status code %1.</source>
        <translation>Lesen mit Statuscode %1 fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Read property Stepped failed with status code %1.</source>
        <translation>Lesen der Eigenschaft Stepped mit Statuscode %1 fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Read property Stepped of node %1 failed with status code %2.</source>
        <translation>Lesen der Eigenschaft Stepped von Knoten %1 mit Statuscode %2 fehlgeschlagen.</translation>
    </message>
    <message>
        <source>TranslateBrowsePathsToNodeIds failed with status code %1.</source>
        <translation>TranslateBrowsePathsToNodeIds mit Statuscode %1 fehlgeschlagen.</translation>
    </message>
    <message>
        <source>True</source>
        <translation>Wahr</translation>
    </message>
</context>
<context>
    <name>QlumTrendPanel</name>
    <message>
        <source>&amp;End Time:</source>
        <translation>E&amp;ndzeit:</translation>
    </message>
    <message>
        <source>&amp;Get Start Time</source>
        <translation>Startzeit h&amp;olen</translation>
    </message>
    <message>
        <source>&amp;Timespan:</source>
        <translation>&amp;Zeitspanne:</translation>
    </message>
    <message>
        <source>&amp;Update</source>
        <translation>&amp;Aktualisieren</translation>
    </message>
    <message>
        <source>Configuration</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Cyclic Update</source>
        <translation>Zyklisch</translation>
    </message>
    <message>
        <source>How long to wait from one update to the next.</source>
        <translation>Wie lange von einer Aktualisierung bis zur nächsten gewartet wird.</translation>
    </message>
    <message>
        <source>How much of the time up to now is read.</source>
        <translation>Wie viel Zeit bis jetzt gelesen wird.</translation>
    </message>
    <message>
        <source>Reads the time span up to now again and again, until you stop it.</source>
        <translation>Liest die Zeitspanne bis jetzt immer wieder, bis Sie anhalten.</translation>
    </message>
    <message>
        <source>Retrieves the timestamp of the first value in history from the UA Server.</source>
        <translation>Holt den Zeitstempel des ersten Werts der Historie vom UA-Server.</translation>
    </message>
    <message>
        <source>Single Update</source>
        <translation>Einmalig</translation>
    </message>
    <message>
        <source>St&amp;art</source>
        <translation>Star&amp;t</translation>
    </message>
    <message>
        <source>St&amp;op</source>
        <translation>Anhal&amp;ten</translation>
    </message>
    <message>
        <source>Start Time:</source>
        <translation>Startzeit:</translation>
    </message>
    <message>
        <source>Update &amp;Interval:</source>
        <translation>Aktualisierungs&amp;intervall:</translation>
    </message>
    <message>
        <source>Updates trendview with the currently configured time range.</source>
        <translation>Aktualisiert den Trend mit dem eingestellten Zeitraum.</translation>
    </message>
    <message>
        <source>Where it ends.</source>
        <translation>Wo sie endet.</translation>
    </message>
    <message>
        <source>Where the history begins that is read. Later than the end: newest first.</source>
        <translation>Wo die gelesene Historie beginnt. Später als das Ende: neueste zuerst.</translation>
    </message>
</context>
<context>
    <name>QlumTrendReading</name>
    <message>
        <source>HistoryReadDataResults[%1] contains no values</source>
        <translation>HistoryReadDataResults[%1] enthält keine Werte</translation>
    </message>
    <message>
        <source>HistoryReadDataResults[%1] has bad status %2</source>
        <translation>HistoryReadDataResults[%1] hat den schlechten Status %2</translation>
    </message>
    <message numerus="yes">
        <source>Looking at %n node(s)</source>
        <translation>
            <numerusform>%n Knoten wird angesehen</numerusform>
            <numerusform>%n Knoten werden angesehen</numerusform>
        </translation>
    </message>
    <message>
        <source>Looking for the first value</source>
        <translation>Den ersten Wert suchen</translation>
    </message>
    <message>
        <source>Reading history</source>
        <translation>Historie lesen</translation>
    </message>
    <message>
        <source>Reading the list of aggregates</source>
        <translation>Die Liste der Aggregate lesen</translation>
    </message>
    <message>
        <source>SourceTimestamp: %1</source>
        <translation>SourceTimestamp: %1</translation>
    </message>
    <message>
        <source>The type of the history values of node &apos;%1&apos; can not be displayed</source>
        <translation>Der Typ der historischen Werte von Knoten „%1“ kann nicht angezeigt werden</translation>
    </message>
    <message>
        <source>Writing history to %1</source>
        <translation>Historie nach %1 schreiben</translation>
    </message>
    <message>
        <source>historyReadRawModified failed with error &apos;%1&apos; (%2)</source>
        <translation>historyReadRawModified ist mit dem Fehler „%1“ fehlgeschlagen (%2)</translation>
    </message>
</context>
<context>
    <name>QlumTrendViewDocument</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>%1 does not go on live.</source>
        <translation>%1 geht nicht live weiter.</translation>
    </message>
    <message>
        <source>%1 holds %2 values.</source>
        <translation>%1 enthält %2 Werte.</translation>
    </message>
    <message>
        <source>%1 up to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>%1 values in %2 s</source>
        <translation>%1 Werte in %2 s</translation>
    </message>
    <message>
        <source>%1 values up to %2, then: %3</source>
        <translation>%1 Werte bis %2, dann: %3</translation>
    </message>
    <message>
        <source>%1 values up to %2; there are more</source>
        <translation>%1 Werte bis %2; es gibt mehr</translation>
    </message>
    <message>
        <source>%1 values, then the reading was ended</source>
        <translation>%1 Werte, dann wurde das Lesen beendet</translation>
    </message>
    <message>
        <source>%1 was not written.</source>
        <translation>%1 wurde nicht geschrieben.</translation>
    </message>
    <message>
        <source>%1: %2; %3; source %4, server %5</source>
        <translation>%1: %2; %3; Quelle %4, Server %5</translation>
    </message>
    <message numerus="yes">
        <source>%n curve(s) could not be read to the end.</source>
        <translation>
            <numerusform>%n Kurve konnte nicht zu Ende gelesen werden.</numerusform>
            <numerusform>%n Kurven konnten nicht zu Ende gelesen werden.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n nodes are to be added at once.</source>
        <translation>
            <numerusform>%n Knoten soll auf einmal hinzugefügt werden.</numerusform>
            <numerusform>%n Knoten sollen auf einmal hinzugefügt werden.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n pixel(s)</source>
        <translation>
            <numerusform>%n Pixel</numerusform>
            <numerusform>%n Pixel</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n values</source>
        <translation>
            <numerusform>%n Wert</numerusform>
            <numerusform>%n Werte</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n variable(s) could not be read to the end; the log says more.</source>
        <translation>
            <numerusform>%n Variable konnte nicht zu Ende gelesen werden; mehr steht im Protokoll.</numerusform>
            <numerusform>%n Variablen konnten nicht zu Ende gelesen werden; mehr steht im Protokoll.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n variable(s) of this view were left out.</source>
        <translation>
            <numerusform>%n Variable dieser Ansicht wurde weggelassen.</numerusform>
            <numerusform>%n Variablen dieser Ansicht wurden weggelassen.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Add Them</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>A&amp;bbrechen</translation>
    </message>
    <message>
        <source>&amp;Catch Values</source>
        <translation>Werte &amp;fangen</translation>
    </message>
    <message>
        <source>&amp;Reset View</source>
        <translation>Ansicht zu&amp;rücksetzen</translation>
    </message>
    <message numerus="yes">
        <source>; %n update(s) skipped</source>
        <translation>
            <numerusform>; %n Aktualisierung übersprungen</numerusform>
            <numerusform>; %n Aktualisierungen übersprungen</numerusform>
        </translation>
    </message>
    <message>
        <source>&lt;b&gt;Draw as Steps&lt;/b&gt;&lt;br&gt;Each value holds until the next, instead of a line between them.</source>
        <translation>&lt;b&gt;Als Stufen zeichnen&lt;/b&gt;&lt;br&gt;Jeder Wert gilt bis zum nächsten, statt einer Linie dazwischen.</translation>
    </message>
    <message>
        <source>&lt;b&gt;Remove Trend Item&lt;/b&gt;&lt;br&gt;Takes the selected variables and their curves out of this view. Nothing changes on the server.</source>
        <translation>&lt;b&gt;Trendelement entfernen&lt;/b&gt;&lt;br&gt;Nimmt die gewählten Variablen und ihre Kurven aus dieser Ansicht. Auf dem Server ändert sich nichts.</translation>
    </message>
    <message>
        <source>Cance&amp;l</source>
        <translation>Ab&amp;brechen</translation>
    </message>
    <message>
        <source>Check &quot;Modified values&quot;, and press Update, to see what somebody has changed.</source>
        <translation>Kreuzen Sie „Geänderte Werte“ an und drücken Sie „Aktualisieren“, um zu sehen, was jemand geändert hat.</translation>
    </message>
    <message>
        <source>Choose a time range, and press Update.</source>
        <translation>Wählen Sie einen Zeitraum und drücken Sie „Aktualisieren“.</translation>
    </message>
    <message>
        <source>Comma separated values (*.csv)</source>
        <translation>Kommagetrennte Werte (*.csv)</translation>
    </message>
    <message>
        <source>Configuration</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Continue Li&amp;ve</source>
        <translation>Live &amp;weiterführen</translation>
    </message>
    <message>
        <source>Curve whose values are listed</source>
        <translation>Kurve, deren Werte aufgelistet werden</translation>
    </message>
    <message>
        <source>Curves appear here as soon as values arrive.</source>
        <translation>Kurven erscheinen hier, sobald Werte ankommen.</translation>
    </message>
    <message>
        <source>Curves go on with the values that the servers report from now on.</source>
        <translation>Kurven gehen mit den Werten weiter, die die Server ab jetzt melden.</translation>
    </message>
    <message>
        <source>Draw as &amp;Steps</source>
        <translation>Als &amp;Stufen zeichnen</translation>
    </message>
    <message>
        <source>Drop nodes here from the Address Space window. Only nodes of type Variable that are History Readable are accepted.</source>
        <translation>Legen Sie hier Knoten aus dem Adressraumfenster ab. Nur Knoten vom Typ Variable mit lesbarer Historie werden angenommen.</translation>
    </message>
    <message>
        <source>Each of them is read from its server, and gets a curve of its own.</source>
        <translation>Jeder davon wird von seinem Server gelesen und bekommt eine eigene Kurve.</translation>
    </message>
    <message>
        <source>Ends reading; what has come stays.</source>
        <translation>Beendet das Lesen; was gekommen ist, bleibt.</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Found session for ServerId %1</source>
        <translation>Sitzung für ServerId %1 gefunden</translation>
    </message>
    <message>
        <source>Found start time: %1</source>
        <translation>Startzeit gefunden: %1</translation>
    </message>
    <message>
        <source>History Data</source>
        <translation>Historische Daten</translation>
    </message>
    <message>
        <source>History Trend View</source>
        <translation>Historientrend</translation>
    </message>
    <message>
        <source>How far it is stands in the list of running work.</source>
        <translation>Wie weit es ist, steht in der Liste laufender Arbeiten.</translation>
    </message>
    <message>
        <source>Line &amp;Width</source>
        <translation>&amp;Linienbreite</translation>
    </message>
    <message>
        <source>Modified Values</source>
        <translation>Geänderte Werte</translation>
    </message>
    <message>
        <source>Modified values</source>
        <translation>Geänderte Werte</translation>
    </message>
    <message>
        <source>No number was read between %1 and %2. The list of variables says more.</source>
        <translation>Zwischen %1 und %2 wurde keine Zahl gelesen. Mehr sagt die Liste der Variablen.</translation>
    </message>
    <message>
        <source>No start time was found.</source>
        <translation>Es wurde keine Startzeit gefunden.</translation>
    </message>
    <message>
        <source>No value was read of any of the variables; the log says why.</source>
        <translation>Von keiner der Variablen wurde ein Wert gelesen; den Grund nennt das Protokoll.</translation>
    </message>
    <message>
        <source>No values to draw</source>
        <translation>Keine Werte zum Zeichnen</translation>
    </message>
    <message>
        <source>No variables yet</source>
        <translation>Noch keine Variablen</translation>
    </message>
    <message>
        <source>None of the servers of these variables is connected. Connect one, and press Update.</source>
        <translation>Keiner der Server dieser Variablen ist verbunden. Verbinden Sie einen und drücken Sie „Aktualisieren“.</translation>
    </message>
    <message>
        <source>Not all processed or modified values could be read.</source>
        <translation>Nicht alle verarbeiteten oder geänderten Werte konnten gelesen werden.</translation>
    </message>
    <message>
        <source>Nothing was read yet</source>
        <translation>Noch wurde nichts gelesen</translation>
    </message>
    <message>
        <source>Nothing was read.</source>
        <translation>Es wurde nichts gelesen.</translation>
    </message>
    <message>
        <source>Nothing was saved.</source>
        <translation>Es wurde nichts gespeichert.</translation>
    </message>
    <message>
        <source>Numeric Values</source>
        <translation>Zahlenwerte</translation>
    </message>
    <message>
        <source>Only values with this text are listed.</source>
        <translation>Nur Werte mit diesem Text werden aufgelistet.</translation>
    </message>
    <message>
        <source>Progress of reading</source>
        <translation>Fortschritt des Lesens</translation>
    </message>
    <message>
        <source>Read &amp;On</source>
        <translation>Weiter&amp;lesen</translation>
    </message>
    <message>
        <source>Reading...</source>
        <translation>Wird gelesen...</translation>
    </message>
    <message>
        <source>Reading: %1 values, %2 s</source>
        <translation>Lesen: %1 Werte, %2 s</translation>
    </message>
    <message>
        <source>Reads the time range into a file, more than the plot could hold.</source>
        <translation>Liest den Zeitraum in eine Datei, mehr, als der Plot fassen könnte.</translation>
    </message>
    <message>
        <source>Remove Trend Item</source>
        <translation>Trendelement entfernen</translation>
    </message>
    <message>
        <source>Sample at the pointer</source>
        <translation>Wert am Zeiger</translation>
    </message>
    <message>
        <source>Save History as CSV</source>
        <translation>Historie als CSV speichern</translation>
    </message>
    <message>
        <source>Save as CSV...</source>
        <translation>Als CSV speichern...</translation>
    </message>
    <message>
        <source>Shows the whole time range that was read.</source>
        <translation>Zeigt den ganzen gelesenen Zeitraum.</translation>
    </message>
    <message>
        <source>Text that values must have to be listed</source>
        <translation>Text, den Werte haben müssen, um aufgelistet zu werden</translation>
    </message>
    <message>
        <source>The history is being written to %1.</source>
        <translation>Die Historie wird nach %1 geschrieben.</translation>
    </message>
    <message>
        <source>The text at the pointer tells the nearest value that was read, not a place between two.</source>
        <translation>Der Text am Zeiger nennt den nächsten gelesenen Wert, nicht eine Stelle zwischen zwei Werten.</translation>
    </message>
    <message>
        <source>Their server is not in the project, or their node id cannot be read.</source>
        <translation>Ihr Server ist nicht im Projekt, oder ihre NodeId kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>There are no variables in this view.</source>
        <translation>In dieser Ansicht sind keine Variablen.</translation>
    </message>
    <message>
        <source>There are too many values to search; read a shorter time range.</source>
        <translation>Es sind zu viele Werte zum Durchsuchen; lesen Sie einen kürzeren Zeitraum.</translation>
    </message>
    <message>
        <source>There is no variable whose server is connected.</source>
        <translation>Es gibt keine Variable, deren Server verbunden ist.</translation>
    </message>
    <message>
        <source>Values</source>
        <translation>Werte</translation>
    </message>
    <message>
        <source>Values of the curve</source>
        <translation>Werte der Kurve</translation>
    </message>
    <message>
        <source>Values of the curve appear here when its history has been read.</source>
        <translation>Werte der Kurve erscheinen hier, wenn ihre Historie gelesen ist.</translation>
    </message>
    <message>
        <source>Values that are no numbers</source>
        <translation>Werte, die keine Zahlen sind</translation>
    </message>
    <message>
        <source>Values that are no numbers appear here.</source>
        <translation>Werte, die keine Zahlen sind, erscheinen hier.</translation>
    </message>
    <message>
        <source>Variable whose values are listed</source>
        <translation>Variable, deren Werte aufgelistet werden</translation>
    </message>
    <message>
        <source>Variables</source>
        <translation>Variablen</translation>
    </message>
    <message>
        <source>Variables with values that are no numbers.</source>
        <translation>Variablen mit Werten, die keine Zahlen sind.</translation>
    </message>
    <message>
        <source>its namespace is not on the server any more</source>
        <translation>ihr Namensraum ist nicht mehr auf dem Server</translation>
    </message>
    <message>
        <source>no connection to its server</source>
        <translation>keine Verbindung zu ihrem Server</translation>
    </message>
    <message>
        <source>no start time was found</source>
        <translation>es wurde keine Startzeit gefunden</translation>
    </message>
    <message>
        <source>no values in this time range</source>
        <translation>keine Werte in diesem Zeitraum</translation>
    </message>
    <message>
        <source>reading on...</source>
        <translation>wird weitergelesen...</translation>
    </message>
    <message>
        <source>reading...</source>
        <translation>wird gelesen...</translation>
    </message>
    <message>
        <source>state</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>the reading failed; the log says more</source>
        <translation>das Lesen ist fehlgeschlagen; mehr steht im Protokoll</translation>
    </message>
    <message>
        <source>the servers of these variables list no aggregates</source>
        <translation>die Server dieser Variablen nennen keine Aggregate</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
</context>
<context>
    <name>QlumTrustList</name>
    <message>
        <source>%1: %2 added, %3 removed</source>
        <translation>%1: %2 hinzugefügt, %3 entfernt</translation>
    </message>
    <message>
        <source>Issuer certificates</source>
        <translation>Ausstellerzertifikate</translation>
    </message>
    <message>
        <source>Issuer revocation lists</source>
        <translation>Sperrlisten der Aussteller</translation>
    </message>
    <message>
        <source>Trusted certificates</source>
        <translation>Vertraute Zertifikate</translation>
    </message>
    <message>
        <source>Trusted revocation lists</source>
        <translation>Vertraute Sperrlisten</translation>
    </message>
</context>
<context>
    <name>QlumTypeCache</name>
    <message>
        <source>Browse for reference HasTypeDefinition on NodeId %1 failed with error %2</source>
        <translation>Durchsuchen nach der Referenz HasTypeDefinition von NodeId %1 mit Fehler %2 fehlgeschlagen</translation>
    </message>
    <message>
        <source>BrowseName has bad statuscode: %1</source>
        <translation>BrowseName hat den schlechten Statuscode: %1</translation>
    </message>
    <message>
        <source>DataTypeId has bad statuscode: %1</source>
        <translation>DataTypeId hat den schlechten Statuscode: %1</translation>
    </message>
    <message>
        <source>DisplayName has bad statuscode: %1</source>
        <translation>DisplayName hat den schlechten Statuscode: %1</translation>
    </message>
    <message>
        <source>Names and icons of types</source>
        <translation>Namen und Symbole von Typen</translation>
    </message>
    <message>
        <source>NodeClass has bad statuscode: %1</source>
        <translation>NodeClass hat den schlechten Statuscode: %1</translation>
    </message>
    <message>
        <source>Read failed with error %1</source>
        <translation>Lesen mit Fehler %1 fehlgeschlagen</translation>
    </message>
    <message>
        <source>Read on NodeId %1 returned unexpected value</source>
        <translation>Lesen von NodeId %1 lieferte einen unerwarteten Wert</translation>
    </message>
    <message>
        <source>Read returned error %1 for DataType of NodeId %2</source>
        <translation>Lesen ergab Fehler %1 für den DataType von NodeId %2</translation>
    </message>
    <message>
        <source>Read returned error %1 for Value of NodeId %2</source>
        <translation>Lesen ergab Fehler %1 für den Value von NodeId %2</translation>
    </message>
    <message>
        <source>Reading type info of NodeId %1 failed with error %2</source>
        <translation>Lesen der Typinformation von NodeId %1 mit Fehler %2 fehlgeschlagen</translation>
    </message>
    <message>
        <source>Reading type info of NodeId %1 succeeded</source>
        <translation>Lesen der Typinformation von NodeId %1 war erfolgreich</translation>
    </message>
    <message>
        <source>Translate failed with error %1</source>
        <translation>Translate mit Fehler %1 fehlgeschlagen</translation>
    </message>
    <message>
        <source>Translate returned error %1 for BrowsePath &apos;Icon&apos; on NodeId %2</source>
        <translation>Translate ergab Fehler %1 für den BrowsePath „Icon“ an NodeId %2</translation>
    </message>
    <message>
        <source>Translate returned no target for BrowsePath &apos;Icon&apos; on NodeId %1</source>
        <translation>Translate lieferte kein Ziel für den BrowsePath „Icon“ an NodeId %1</translation>
    </message>
    <message>
        <source>TypeCache</source>
        <translation>Typspeicher</translation>
    </message>
    <message>
        <source>ValueRank has bad statuscode: %1</source>
        <translation>ValueRank hat den schlechten Statuscode: %1</translation>
    </message>
</context>
<context>
    <name>QlumTypeDelegate</name>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
</context>
<context>
    <name>QlumUpdateCheck</name>
    <message>
        <source>Already up to date</source>
        <translation>Bereits aktuell</translation>
    </message>
    <message>
        <source>An update of Tavelin is available: Tavelin V%1
Click OK to download it now.</source>
        <translation>Eine neue Version von Tavelin ist verfügbar: Tavelin V%1
Mit OK laden Sie sie jetzt herunter.</translation>
    </message>
    <message>
        <source>Automatic Update</source>
        <translation>Automatische Aktualisierung</translation>
    </message>
    <message>
        <source>Check for Updates</source>
        <translation>Nach Aktualisierungen suchen</translation>
    </message>
    <message>
        <source>Could not retreive version or URL from server response</source>
        <translation>Version oder URL konnte der Antwort des Servers nicht entnommen werden</translation>
    </message>
    <message>
        <source>Error retrieving current version information: %1</source>
        <translation>Fehler beim Abrufen der aktuellen Versionsangabe: %1</translation>
    </message>
    <message>
        <source>The download address &apos;%1&apos; is not one of the web.</source>
        <translation>Die Download-Adresse „%1“ ist keine Webadresse.</translation>
    </message>
    <message>
        <source>The newest version of Tavelin is already installed</source>
        <translation>Die neueste Version von Tavelin ist bereits installiert</translation>
    </message>
    <message>
        <source>The newest version of Tavelin is already installed.</source>
        <translation>Die neueste Version von Tavelin ist bereits installiert.</translation>
    </message>
    <message>
        <source>Update available</source>
        <translation>Aktualisierung verfügbar</translation>
    </message>
    <message>
        <source>Version info has invalid format (current: &apos;%1&apos;, received: &apos;%2&apos;)</source>
        <translation>Die Versionsangabe hat ein ungültiges Format (aktuell: „%1“, empfangen: „%2“)</translation>
    </message>
</context>
<context>
    <name>QlumUpdateDialog</name>
    <message>
        <source> days</source>
        <translation> Tage</translation>
    </message>
    <message>
        <source>&amp;Check for updates automatically</source>
        <translation>&amp;Automatisch nach Aktualisierungen suchen</translation>
    </message>
    <message>
        <source>&amp;Interval:</source>
        <translation>&amp;Intervall:</translation>
    </message>
    <message>
        <source>Automatic Update</source>
        <translation>Automatische Aktualisierung</translation>
    </message>
    <message>
        <source>Days between checks</source>
        <translation>Tage zwischen den Prüfungen</translation>
    </message>
    <message>
        <source>Tavelin can ask from time to time whether there is a newer version. Nothing but the question is sent. You can change this in the settings at any time.</source>
        <translation>Tavelin kann von Zeit zu Zeit fragen, ob es eine neuere Version gibt. Gesendet wird nichts als die Frage. Sie können das jederzeit in den Einstellungen ändern.</translation>
    </message>
</context>
<context>
    <name>QlumUserPasswordDlg</name>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Kennwort:</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>&amp;Benutzername:</translation>
    </message>
    <message>
        <source>&lt;b&gt;Password&lt;/b&gt;&lt;br&gt;Used for this connection; it is not written to any file.</source>
        <translation>&lt;b&gt;Kennwort&lt;/b&gt;&lt;br&gt;Wird für diese Verbindung verwendet; es wird in keine Datei geschrieben.</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Kennwort</translation>
    </message>
    <message>
        <source>The server &apos;%1&apos; wants to know who you are before it opens a session.</source>
        <translation>Der Server „%1“ will wissen, wer Sie sind, bevor er eine Sitzung öffnet.</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Benutzername</translation>
    </message>
</context>
<context>
    <name>QlumValueChecks</name>
    <message>
        <source>%1 dimensions</source>
        <translation>%1 Dimensionen</translation>
    </message>
    <message>
        <source>%1 is no value of the enumeration %2.</source>
        <translation>%1 ist kein Wert der Aufzählung %2.</translation>
    </message>
    <message>
        <source>%1%2 lies outside %3, %4 to %5%2.</source>
        <translation>%1%2 liegt außerhalb von %3, %4 bis %5%2.</translation>
    </message>
    <message>
        <source>%1, at most %2</source>
        <translation>%1, höchstens %2</translation>
    </message>
    <message>
        <source>Bit %1 has no meaning in %2.</source>
        <translation>Bit %1 hat in %2 keine Bedeutung.</translation>
    </message>
    <message>
        <source>Dimension %1 has %2 elements, the server takes %3 at most.</source>
        <translation>Dimension %1 hat %2 Elemente, der Server nimmt höchstens %3.</translation>
    </message>
    <message>
        <source>EURange</source>
        <translation>EURange</translation>
    </message>
    <message>
        <source>InstrumentRange</source>
        <translation>InstrumentRange</translation>
    </message>
    <message>
        <source>It has %1 elements, the server takes %2 at most.</source>
        <translation>Es hat %1 Elemente, der Server nimmt höchstens %2.</translation>
    </message>
    <message>
        <source>It is %1 bytes long, the server takes %2 at most (MaxStringLength).</source>
        <translation>Es ist %1 Bytes lang, der Server nimmt höchstens %2 (MaxStringLength).</translation>
    </message>
    <message>
        <source>It is of type %1, the server expects %2.</source>
        <translation>Es ist vom Typ %1, der Server erwartet %2.</translation>
    </message>
    <message>
        <source>The server expects %1, this has %2.</source>
        <translation>Der Server erwartet %1, das hier hat %2.</translation>
    </message>
    <message>
        <source>The variable has no name for %1.</source>
        <translation>Die Variable hat keinen Namen für %1.</translation>
    </message>
    <message>
        <source>a matrix of %1 dimensions</source>
        <translation>eine Matrix mit %1 Dimensionen</translation>
    </message>
    <message>
        <source>a scalar</source>
        <translation>ein Skalar</translation>
    </message>
    <message>
        <source>a scalar or an array</source>
        <translation>ein Skalar oder ein Array</translation>
    </message>
    <message>
        <source>an array</source>
        <translation>ein Array</translation>
    </message>
    <message>
        <source>an array of %1 elements at most</source>
        <translation>ein Array mit höchstens %1 Elementen</translation>
    </message>
    <message>
        <source>an array of any number of dimensions</source>
        <translation>ein Array mit beliebig vielen Dimensionen</translation>
    </message>
    <message>
        <source>any</source>
        <translation>beliebig</translation>
    </message>
    <message>
        <source>no dimension</source>
        <translation>keine Dimension</translation>
    </message>
</context>
<context>
    <name>QlumValueDelegate</name>
    <message>
        <source>%1 Press Enter again to send it all the same.</source>
        <translation>%1 Drücken Sie noch einmal die Eingabetaste, um es trotzdem zu senden.</translation>
    </message>
</context>
<context>
    <name>QlumValueDialog</name>
    <message>
        <source>%1 %2 to %3%4</source>
        <translation>%1 %2 bis %3%4</translation>
    </message>
    <message>
        <source>&amp;JSON</source>
        <translation>&amp;JSON</translation>
    </message>
    <message>
        <source>&amp;Send Anyway</source>
        <translation>Trotzdem &amp;senden</translation>
    </message>
    <message>
        <source>&amp;Value</source>
        <translation>&amp;Wert</translation>
    </message>
    <message>
        <source>EURange</source>
        <translation>EURange</translation>
    </message>
    <message>
        <source>InstrumentRange</source>
        <translation>InstrumentRange</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>The server will refuse this: %1 Press Enter again to send it all the same.</source>
        <translation>Der Server wird das ablehnen: %1 Drücken Sie noch einmal die Eingabetaste, um es trotzdem zu senden.</translation>
    </message>
    <message>
        <source>The value as text, for copying and pasting</source>
        <translation>Der Wert als Text, zum Kopieren und Einfügen</translation>
    </message>
    <message>
        <source>The value by its fields</source>
        <translation>Der Wert nach seinen Feldern</translation>
    </message>
    <message>
        <source>There is no value yet.</source>
        <translation>Es gibt noch keinen Wert.</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>at most %1 bytes</source>
        <translation>höchstens %1 Bytes</translation>
    </message>
</context>
<context>
    <name>QlumValueFacts</name>
    <message>
        <source>Nobody may write it: AccessLevel has no CurrentWrite.</source>
        <translation>Niemand darf ihn schreiben: AccessLevel hat kein CurrentWrite.</translation>
    </message>
    <message>
        <source>The user who is logged in may not write it: UserAccessLevel has no CurrentWrite.</source>
        <translation>Der angemeldete Benutzer darf ihn nicht schreiben: UserAccessLevel hat kein CurrentWrite.</translation>
    </message>
</context>
<context>
    <name>QlumValueText</name>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>hexadecimal bytes: 0x00ff</source>
        <translation>hexadezimale Bytes: 0x00ff</translation>
    </message>
    <message>
        <source>name or number of the code: BadNotWritable, 0x803b0000</source>
        <translation>Name oder Nummer des Codes: BadNotWritable, 0x803b0000</translation>
    </message>
    <message>
        <source>namespace index and name: 2:name</source>
        <translation>Namensraumindex und Name: 2:Name</translation>
    </message>
</context>
<context>
    <name>QlumValueWidget</name>
    <message>
        <source>&amp;Array</source>
        <translation>&amp;Array</translation>
    </message>
    <message>
        <source>Several values of that type</source>
        <translation>Mehrere Werte dieses Typs</translation>
    </message>
    <message>
        <source>T&amp;ype:</source>
        <translation>T&amp;yp:</translation>
    </message>
    <message>
        <source>The type with which the value is sent</source>
        <translation>Der Typ, mit dem der Wert gesendet wird</translation>
    </message>
</context>
<context>
    <name>QlumVariableIntake</name>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>Add a Branch</source>
        <translation>Zweig hinzufügen</translation>
    </message>
    <message numerus="yes">
        <source>Below &quot;%1&quot; are %n variable(s).</source>
        <translation>
            <numerusform>Unter „%1“ ist %n Variable.</numerusform>
            <numerusform>Unter „%1“ sind %n Variablen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Counting the variables below %1</source>
        <translation>Die Variablen unter %1 zählen</translation>
    </message>
    <message>
        <source>It does not come from an address space of this program, or it is damaged.</source>
        <translation>Es kommt nicht aus einem Adressraum dieses Programms, oder es ist beschädigt.</translation>
    </message>
    <message>
        <source>Looking at what was dropped</source>
        <translation>Ansehen, was abgelegt wurde</translation>
    </message>
    <message>
        <source>Looking ended early (%1).</source>
        <translation>Das Nachsehen endete vorzeitig (%1).</translation>
    </message>
    <message>
        <source>No variables were found below &quot;%1&quot;.</source>
        <translation>Unter „%1“ wurden keine Variablen gefunden.</translation>
    </message>
    <message>
        <source>Nodes of another window of the program have to be looked for here first.</source>
        <translation>Knoten eines anderen Fensters des Programms müssen hier erst gesucht werden.</translation>
    </message>
    <message>
        <source>Shall they all be added to this view?</source>
        <translation>Sollen sie alle dieser Ansicht hinzugefügt werden?</translation>
    </message>
    <message>
        <source>There are objects, methods or properties only.</source>
        <translation>Es gibt nur Objekte, Methoden oder Eigenschaften.</translation>
    </message>
    <message>
        <source>There may be more: looking ended there.</source>
        <translation>Es gibt vielleicht mehr: Dort endete das Nachsehen.</translation>
    </message>
    <message>
        <source>What was dropped belongs to no server of this project.</source>
        <translation>Was abgelegt wurde, gehört zu keinem Server dieses Projekts.</translation>
    </message>
    <message>
        <source>What was dropped cannot be read.</source>
        <translation>Was abgelegt wurde, kann nicht gelesen werden.</translation>
    </message>
</context>
<context>
    <name>QlumViewHeading</name>
    <message>
        <source>&lt;b&gt;What is shown&lt;/b&gt;&lt;br&gt;The server and the node, whether the connection stands, and how long ago the content was received.</source>
        <translation>&lt;b&gt;Was gezeigt wird&lt;/b&gt;&lt;br&gt;Server und Knoten, ob die Verbindung steht und vor wie langer Zeit der Inhalt empfangen wurde.</translation>
    </message>
    <message>
        <source>Activity</source>
        <translation>Tätigkeit</translation>
    </message>
    <message>
        <source>Connection</source>
        <translation>Verbindung</translation>
    </message>
    <message>
        <source>Node</source>
        <translation>Knoten</translation>
    </message>
    <message>
        <source>Received</source>
        <translation>Empfangen</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>connected</source>
        <translation>verbunden</translation>
    </message>
    <message>
        <source>connecting</source>
        <translation>verbindet</translation>
    </message>
    <message>
        <source>connection lost</source>
        <translation>Verbindung verloren</translation>
    </message>
    <message>
        <source>disconnected</source>
        <translation>getrennt</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>nicht verbunden</translation>
    </message>
    <message>
        <source>received %1 h ago</source>
        <translation>vor %1 h empfangen</translation>
    </message>
    <message>
        <source>received %1 min ago</source>
        <translation>vor %1 min empfangen</translation>
    </message>
    <message>
        <source>received %1 s ago</source>
        <translation>vor %1 s empfangen</translation>
    </message>
    <message>
        <source>received now</source>
        <translation>jetzt empfangen</translation>
    </message>
</context>
<context>
    <name>QlumWatchSettings</name>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>Absolute</source>
        <translation>Absolut</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>Beide</translation>
    </message>
    <message>
        <source>Disabled</source>
        <translation>Abgeschaltet</translation>
    </message>
    <message>
        <source>Neither</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keines</translation>
    </message>
    <message>
        <source>Percent</source>
        <translation>Prozent</translation>
    </message>
    <message>
        <source>Reporting</source>
        <translation>Melden</translation>
    </message>
    <message>
        <source>Sampling</source>
        <translation>Abtasten</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Status, value</source>
        <translation>Status, Wert</translation>
    </message>
    <message>
        <source>Status, value, timestamp</source>
        <translation>Status, Wert, Zeitstempel</translation>
    </message>
    <message>
        <source>fastest</source>
        <translation>schnellstens</translation>
    </message>
</context>
<context>
    <name>QlumWhereModel</name>
    <message>
        <source>Condition</source>
        <translation>Bedingung</translation>
    </message>
    <message>
        <source>Join</source>
        <translation>Verknüpfung</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>accepted</source>
        <translation>angenommen</translation>
    </message>
    <message>
        <source>and</source>
        <translation>und</translation>
    </message>
    <message>
        <source>or</source>
        <translation>oder</translation>
    </message>
</context>
<context>
    <name>QlumWherePage</name>
    <message>
        <source>&amp;Add</source>
        <translation>Hinzu&amp;fügen</translation>
    </message>
    <message>
        <source>&amp;not</source>
        <translation>&amp;nicht</translation>
    </message>
    <message>
        <source>1 to 1000</source>
        <translation>1 bis 1000</translation>
    </message>
    <message>
        <source>All events are received. Add a condition to have the server leave others out.</source>
        <translation>Alle Ereignisse werden empfangen. Fügen Sie eine Bedingung hinzu, damit der Server andere weglässt.</translation>
    </message>
    <message>
        <source>Brackets that close behind it</source>
        <translation>Klammern, die dahinter schließen</translation>
    </message>
    <message>
        <source>Brackets that open before it</source>
        <translation>Klammern, die davor öffnen</translation>
    </message>
    <message>
        <source>Conditions</source>
        <translation>Bedingungen</translation>
    </message>
    <message>
        <source>Event type</source>
        <translation>Ereignistyp</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>How it is joined</source>
        <translation>Wie sie verknüpft ist</translation>
    </message>
    <message>
        <source>Operator</source>
        <translation>Operator</translation>
    </message>
    <message>
        <source>Re&amp;move</source>
        <translation>Entfe&amp;rnen</translation>
    </message>
    <message>
        <source>Severity</source>
        <translation>Schweregrad</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>The condition must not be met</source>
        <translation>Die Bedingung darf nicht erfüllt sein</translation>
    </message>
    <message>
        <source>The server refuses these conditions. The events are filtered by this program; the server sends all of them.</source>
        <translation>Der Server lehnt diese Bedingungen ab. Dieses Programm filtert die Ereignisse; der Server sendet alle.</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Type of the value</source>
        <translation>Typ des Werts</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>What is looked at</source>
        <translation>Was angesehen wird</translation>
    </message>
    <message>
        <source>and</source>
        <translation>und</translation>
    </message>
    <message>
        <source>conditions</source>
        <translation>Bedingungen</translation>
    </message>
    <message>
        <source>not</source>
        <translation>nicht</translation>
    </message>
    <message>
        <source>or</source>
        <translation>oder</translation>
    </message>
</context>
<context>
    <name>QlumWorkIndicator</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1: %2 of %3</source>
        <translation>%1: %2 von %3</translation>
    </message>
    <message>
        <source>%1: %2 of %3, %4 s left</source>
        <translation>%1: %2 von %3, noch %4 s</translation>
    </message>
    <message>
        <source>%1: being cancelled</source>
        <translation>%1: wird abgebrochen</translation>
    </message>
    <message>
        <source>%1: waiting</source>
        <translation>%1: wartet</translation>
    </message>
    <message numerus="yes">
        <source>%n running</source>
        <translation>
            <numerusform>%n läuft</numerusform>
            <numerusform>%n laufen</numerusform>
        </translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Cancel %1</source>
        <translation>%1 abbrechen</translation>
    </message>
    <message>
        <source>Ends this work</source>
        <translation>Beendet diese Arbeit</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Progress of %1</source>
        <translation>Fortschritt von %1</translation>
    </message>
    <message>
        <source>Shows all work that is under way</source>
        <translation>Zeigt alle laufenden Arbeiten</translation>
    </message>
    <message>
        <source>Work under way</source>
        <translation>Laufende Arbeiten</translation>
    </message>
</context>
<context>
    <name>QlumWriteFailure</name>
    <message>
        <source>it cannot be written in the present state</source>
        <translation>er kann im jetzigen Zustand nicht geschrieben werden</translation>
    </message>
    <message>
        <source>its source is out of service</source>
        <translation>seine Quelle ist außer Betrieb</translation>
    </message>
    <message>
        <source>no answer in time; it may have been written all the same</source>
        <translation>keine rechtzeitige Antwort; vielleicht wurde er trotzdem geschrieben</translation>
    </message>
    <message>
        <source>nobody may write this value</source>
        <translation>niemand darf diesen Wert schreiben</translation>
    </message>
    <message>
        <source>somebody else has locked it</source>
        <translation>jemand anderes hat ihn gesperrt</translation>
    </message>
    <message>
        <source>the array has become shorter</source>
        <translation>das Array ist kürzer geworden</translation>
    </message>
    <message>
        <source>the connection is not secure enough for it</source>
        <translation>die Verbindung ist dafür nicht sicher genug</translation>
    </message>
    <message>
        <source>the device behind the server has failed</source>
        <translation>das Gerät hinter dem Server ist ausgefallen</translation>
    </message>
    <message>
        <source>the node has no such attribute</source>
        <translation>der Knoten hat kein solches Attribut</translation>
    </message>
    <message>
        <source>the server cannot write a value of this kind</source>
        <translation>der Server kann einen Wert dieser Art nicht schreiben</translation>
    </message>
    <message>
        <source>the server does not reach the device</source>
        <translation>der Server erreicht das Gerät nicht</translation>
    </message>
    <message>
        <source>the server expects a value of another type or shape</source>
        <translation>der Server erwartet einen Wert anderen Typs oder anderer Form</translation>
    </message>
    <message>
        <source>the user who is logged in may not write it</source>
        <translation>der angemeldete Benutzer darf ihn nicht schreiben</translation>
    </message>
</context>
<context>
    <name>recording::CsvReader</name>
    <message>
        <source>%1 is damaged: rows that are not whole were left out.</source>
        <translation>%1 ist beschädigt: Unvollständige Zeilen wurden weggelassen.</translation>
    </message>
    <message>
        <source>%1 is not there, or may not be read.</source>
        <translation>%1 ist nicht vorhanden oder darf nicht gelesen werden.</translation>
    </message>
    <message>
        <source>%1 is not there.</source>
        <translation>%1 ist nicht vorhanden.</translation>
    </message>
    <message>
        <source>What was recorded before, %1, is not there.</source>
        <translation>Was vorher aufgezeichnet wurde, %1, ist nicht vorhanden.</translation>
    </message>
</context>
<context>
    <name>recording::CsvRecord</name>
    <message>
        <source>%1 cannot be deleted.</source>
        <translation>%1 kann nicht gelöscht werden.</translation>
    </message>
    <message>
        <source>%1 cannot be made: %2</source>
        <translation>%1 kann nicht angelegt werden: %2</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>%1 was cut while it was recorded to.</source>
        <translation>%1 wurde gekürzt, während aufgezeichnet wurde.</translation>
    </message>
    <message>
        <source>%1 was removed while it was recorded to.</source>
        <translation>%1 wurde entfernt, während aufgezeichnet wurde.</translation>
    </message>
    <message>
        <source>%1 was replaced while it was recorded to.</source>
        <translation>%1 wurde ersetzt, während aufgezeichnet wurde.</translation>
    </message>
    <message>
        <source>No file is open.</source>
        <translation>Es ist keine Datei offen.</translation>
    </message>
    <message>
        <source>There is no free name for %1.</source>
        <translation>Für %1 gibt es keinen freien Namen.</translation>
    </message>
</context>
<context>
    <name>recording::CsvTable</name>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>%1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>%1 is damaged.</source>
        <translation>%1 ist beschädigt.</translation>
    </message>
    <message>
        <source>%1 is no recording.</source>
        <translation>%1 ist keine Aufzeichnung.</translation>
    </message>
</context>
<context>
    <name>recording::RecordReader</name>
    <message>
        <source>%1 cannot be read: %2</source>
        <translation>%1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>%1 is damaged: %2</source>
        <translation>%1 ist beschädigt: %2</translation>
    </message>
    <message>
        <source>%1 is no recording.</source>
        <translation>%1 ist keine Aufzeichnung.</translation>
    </message>
    <message>
        <source>%1 is not there, or may not be read.</source>
        <translation>%1 ist nicht vorhanden oder darf nicht gelesen werden.</translation>
    </message>
    <message>
        <source>%1 was made by a newer version.</source>
        <translation>%1 wurde von einer neueren Version erstellt.</translation>
    </message>
</context>
<context>
    <name>recording::SqliteRecord</name>
    <message>
        <source>%1 is being recorded to already, by process %2 on %3.</source>
        <translation>In %1 wird bereits aufgezeichnet, von Prozess %2 auf %3.</translation>
    </message>
    <message>
        <source>%1 is damaged.</source>
        <translation>%1 ist beschädigt.</translation>
    </message>
    <message>
        <source>%1 is damaged: %2</source>
        <translation>%1 ist beschädigt: %2</translation>
    </message>
    <message>
        <source>%1 is no recording, and is left alone.</source>
        <translation>%1 ist keine Aufzeichnung und bleibt unberührt.</translation>
    </message>
    <message>
        <source>%1 was cut while it was recorded to.</source>
        <translation>%1 wurde gekürzt, während aufgezeichnet wurde.</translation>
    </message>
    <message>
        <source>%1 was damaged while it was recorded to.</source>
        <translation>%1 wurde beschädigt, während aufgezeichnet wurde.</translation>
    </message>
    <message>
        <source>%1 was made by a newer version.</source>
        <translation>%1 wurde von einer neueren Version erstellt.</translation>
    </message>
    <message>
        <source>%1 was removed while it was recorded to.</source>
        <translation>%1 wurde entfernt, während aufgezeichnet wurde.</translation>
    </message>
    <message>
        <source>%1 was replaced while it was recorded to.</source>
        <translation>%1 wurde ersetzt, während aufgezeichnet wurde.</translation>
    </message>
    <message>
        <source>The driver of SQLite files is not installed (libqt5sql5-sqlite).</source>
        <translation>Der Treiber für SQLite-Dateien ist nicht installiert (libqt5sql5-sqlite).</translation>
    </message>
    <message>
        <source>The folder of %1 cannot be written to.</source>
        <translation>In den Ordner von %1 kann nicht geschrieben werden.</translation>
    </message>
</context>
</TS>
