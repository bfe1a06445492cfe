<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Alert</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>ArrangementsSheet</name>
    <message>
        <source>Saved Arrangements</source>
        <translation>Gesicherte Anordnungen</translation>
    </message>
    <message>
        <source>Restore…</source>
        <translation>Wiederherstellen …</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Mehr</translation>
    </message>
    <message>
        <source>Backups…</source>
        <translation>Sicherungen …</translation>
    </message>
    <message>
        <source>Import…</source>
        <translation>Importieren …</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Arrangements (*.tessellar-arrangement)</source>
        <translation>Anordnungen (*.tessellar-arrangement)</translation>
    </message>
</context>
<context>
    <name>ArrangingSheet</name>
    <message>
        <source>Welcome to Tessellar</source>
        <translation>Willkommen bei Tessellar</translation>
    </message>
    <message>
        <source>Arrange Applications</source>
        <translation>Programme anordnen</translation>
    </message>
    <message>
        <source>How should your applications be arranged?</source>
        <translation>Wie sollen Ihre Programme angeordnet werden?</translation>
    </message>
    <message>
        <source>Previous Page</source>
        <translation>Vorige Seite</translation>
    </message>
    <message>
        <source>Next Page</source>
        <translation>Nächste Seite</translation>
    </message>
    <message>
        <source>You can come back to this with “Arrange Applications…” in the menu of the background.</source>
        <translation>Mit „Programme anordnen …“ im Menü des Hintergrunds kommen Sie hierher zurück.</translation>
    </message>
    <message>
        <source>A backup of the current arrangement is kept, and “Undo” restores it.</source>
        <translation>Von der jetzigen Anordnung wird eine Sicherung behalten, und „Widerrufen“ holt sie zurück.</translation>
    </message>
    <message>
        <source>Not Now</source>
        <translation>Nicht jetzt</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Use This Arrangement</source>
        <translation>Diese Anordnung verwenden</translation>
    </message>
</context>
<context>
    <name>BackupsSheet</name>
    <message>
        <source>Backups</source>
        <translation>Sicherungen</translation>
    </message>
    <message>
        <source>Restore…</source>
        <translation>Wiederherstellen …</translation>
    </message>
    <message>
        <source>Saved Arrangements…</source>
        <translation>Gesicherte Anordnungen …</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>DayGrid</name>
    <message>
        <source>Previous month</source>
        <translation>Voriger Monat</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <source>Next month</source>
        <translation>Nächster Monat</translation>
    </message>
</context>
<context>
    <name>FieldBox</name>
    <message>
        <source>More</source>
        <translation>Mehr</translation>
    </message>
    <message>
        <source>Less</source>
        <translation>Weniger</translation>
    </message>
    <message>
        <source>Suggestions</source>
        <translation>Vorschläge</translation>
    </message>
</context>
<context>
    <name>FileButton</name>
    <message>
        <source>Browse…</source>
        <translation>Durchsuchen …</translation>
    </message>
</context>
<context>
    <name>FolderOverlay</name>
    <message>
        <source>Nothing matches its rules.</source>
        <translation>Den Regeln entspricht nichts.</translation>
    </message>
</context>
<context>
    <name>IconSheet</name>
    <message>
        <source>Change the Icon of “%1”</source>
        <translation>Symbol von „%1“ ändern</translation>
    </message>
    <message>
        <source>Path of an .icns file</source>
        <translation>Pfad einer .icns-Datei</translation>
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
        <source>Drop an .icns file here, choose one, or give its path.</source>
        <translation>Ziehen Sie eine .icns-Datei hierher, wählen Sie eine aus oder geben Sie ihren Pfad an.</translation>
    </message>
    <message>
        <source>Icons (*.icns)</source>
        <translation>Symbole (*.icns)</translation>
    </message>
</context>
<context>
    <name>InformationLine</name>
    <message>
        <source>Reveal</source>
        <translation>Im Ordner zeigen</translation>
    </message>
</context>
<context>
    <name>InformationSheet</name>
    <message>
        <source>Looking…</source>
        <translation>Wird gesucht …</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>KeysSheet</name>
    <message>
        <source>Ctrl+</source>
        <translation>Strg+</translation>
    </message>
    <message>
        <source>Any letter</source>
        <translation>Beliebiger Buchstabe</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Eingabetaste</translation>
    </message>
    <message>
        <source>Open what is selected, or found</source>
        <translation>Auswahl oder Fund öffnen</translation>
    </message>
    <message>
        <source>Open one of the first that are found</source>
        <translation>Einen der ersten Funde öffnen</translation>
    </message>
    <message>
        <source>Arrows</source>
        <translation>Pfeiltasten</translation>
    </message>
    <message>
        <source>Go from tile to tile</source>
        <translation>Von Kachel zu Kachel gehen</translation>
    </message>
    <message>
        <source>Shift and arrows</source>
        <translation>Umschalt und Pfeiltasten</translation>
    </message>
    <message>
        <source>Select more or fewer</source>
        <translation>Mehr oder weniger auswählen</translation>
    </message>
    <message>
        <source>arrows</source>
        <translation>Pfeiltasten</translation>
    </message>
    <message>
        <source>Move what is selected</source>
        <translation>Auswahl bewegen</translation>
    </message>
    <message>
        <source>Shift+arrows</source>
        <translation>Umschalt+Pfeiltasten</translation>
    </message>
    <message>
        <source>Group with the tile beside</source>
        <translation>Mit der Kachel daneben gruppieren</translation>
    </message>
    <message>
        <source>Group what is selected</source>
        <translation>Auswahl gruppieren</translation>
    </message>
    <message>
        <source>Select all of the page</source>
        <translation>Alles auf der Seite auswählen</translation>
    </message>
    <message>
        <source>Cut, copy, paste</source>
        <translation>Ausschneiden, kopieren, einsetzen</translation>
    </message>
    <message>
        <source>Shift+Z</source>
        <translation>Umschalt+Z</translation>
    </message>
    <message>
        <source>Undo, redo</source>
        <translation>Widerrufen, wiederholen</translation>
    </message>
    <message>
        <source>Information about the application</source>
        <translation>Informationen über das Programm</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Page Up, Page Down</source>
        <translation>Bild auf, Bild ab</translation>
    </message>
    <message>
        <source>Turn the page</source>
        <translation>Blättern</translation>
    </message>
    <message>
        <source>Home, End</source>
        <translation>Pos1, Ende</translation>
    </message>
    <message>
        <source>First page, last page</source>
        <translation>Erste Seite, letzte Seite</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>The menu of what is selected</source>
        <translation>Menü der Auswahl</translation>
    </message>
    <message>
        <source>Escape</source>
        <translation>Escape</translation>
    </message>
    <message>
        <source>One step back</source>
        <translation>Einen Schritt zurück</translation>
    </message>
    <message>
        <source>This list</source>
        <translation>Diese Liste</translation>
    </message>
    <message>
        <source>Keyboard Shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
</context>
<context>
    <name>Main</name>
    <message>
        <source>No applications were found.</source>
        <translation>Es wurden keine Programme gefunden.</translation>
    </message>
    <message>
        <source>No results for “%1”</source>
        <translation>Keine Treffer für „%1“</translation>
    </message>
</context>
<context>
    <name>MenuPanel</name>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
</context>
<context>
    <name>NameField</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
</context>
<context>
    <name>NewsSheet</name>
    <message>
        <source>What Is New in Tessellar</source>
        <translation>Neu in Tessellar</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>PageDots</name>
    <message>
        <source>Page %1</source>
        <translation>Seite %1</translation>
    </message>
</context>
<context>
    <name>PastRemovalsSheet</name>
    <message>
        <source>Past Removals</source>
        <translation>Entfernte Programme</translation>
    </message>
    <message>
        <source>Put Back</source>
        <translation>Zurücklegen</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>PortalHotKey</name>
    <message>
        <source>Show or hide the launcher</source>
        <translation>Launcher ein- oder ausblenden</translation>
    </message>
</context>
<context>
    <name>RemovalSheet</name>
    <message>
        <source>“%1”</source>
        <translation>„%1“</translation>
    </message>
    <message>
        <source>Move “%1” to the Trash?</source>
        <translation>„%1“ in den Papierkorb legen?</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>Alles auswählen</translation>
    </message>
    <message>
        <source>Reveal</source>
        <translation>Im Ordner zeigen</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Put Back</source>
        <translation>Zurücklegen</translation>
    </message>
    <message>
        <source>Move to Trash</source>
        <translation>In den Papierkorb legen</translation>
    </message>
</context>
<context>
    <name>RuleRow</name>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Condition</source>
        <translation>Bedingung</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Auswählen …</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>Remove rule</source>
        <translation>Regel entfernen</translation>
    </message>
    <message>
        <source>Add rule</source>
        <translation>Regel hinzufügen</translation>
    </message>
</context>
<context>
    <name>SearchField</name>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
</context>
<context>
    <name>SettingRow</name>
    <message>
        <source>Back to what is usual</source>
        <translation>Auf den üblichen Wert zurücksetzen</translation>
    </message>
</context>
<context>
    <name>SettingsSheet</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>SmartFolderSheet</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Show apps that match</source>
        <translation>Apps anzeigen, die passen</translation>
    </message>
    <message>
        <source>Match</source>
        <translation>Erfüllt</translation>
    </message>
    <message>
        <source>of these rules:</source>
        <translation>dieser Regeln:</translation>
    </message>
    <message>
        <source>Add Rule</source>
        <translation>Regel hinzufügen</translation>
    </message>
    <message>
        <source>Sort by</source>
        <translation>Sortieren nach</translation>
    </message>
    <message>
        <source>Order</source>
        <translation>Reihenfolge</translation>
    </message>
    <message>
        <source>Show at most</source>
        <translation>Höchstens</translation>
    </message>
    <message>
        <source>Limit</source>
        <translation>Obergrenze</translation>
    </message>
    <message>
        <source>apps</source>
        <translation>Apps anzeigen</translation>
    </message>
    <message>
        <source>What matches appears here.</source>
        <translation>Was passt, erscheint hier.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Sichern</translation>
    </message>
</context>
<context>
    <name>SymbolStrip</name>
    <message>
        <source>Contents</source>
        <translation>Inhalt</translation>
    </message>
</context>
<context>
    <name>Texts</name>
    <message>
        <source>Shows the installed applications as pages of tiles.</source>
        <translation>Zeigt die installierten Programme als Seiten mit Kacheln.</translation>
    </message>
    <message>
        <source>A folder that holds a Mac&apos;s layout, to run on instead of this machine</source>
        <translation>Ein Ordner mit dem Aufbau eines Macs, auf dem statt auf diesem Rechner gearbeitet wird</translation>
    </message>
    <message>
        <source>The user&apos;s home, under the root</source>
        <translation>Das Benutzerverzeichnis unterhalb der Wurzel</translation>
    </message>
    <message>
        <source>fullScreen or windowed; without, as it was last</source>
        <translation>fullScreen oder windowed; ohne Angabe wie zuletzt</translation>
    </message>
    <message>
        <source>The user&apos;s locale, such as de_DE</source>
        <translation>Das Gebietsschema des Benutzers, etwa de_DE</translation>
    </message>
    <message>
        <source>Write an image of the first complete frame to a PNG file and exit</source>
        <translation>Schreibt ein Bild der ersten vollständigen Ansicht in eine PNG-Datei und endet</translation>
    </message>
    <message>
        <source>WIDTH HEIGHT of a screen to fill instead of the real one</source>
        <translation>BREITE HÖHE eines Bildschirms, der statt des echten gefüllt wird</translation>
    </message>
    <message>
        <source>Draw by the graphics processor, or without it</source>
        <translation>Mit dem Grafikprozessor zeichnen oder ohne ihn</translation>
    </message>
    <message>
        <source>Stay in the background without the window; starting again shows it</source>
        <translation>Ohne Fenster im Hintergrund weiterlaufen; ein neuer Start zeigt es wieder</translation>
    </message>
    <message>
        <source>Start in the background, without the window</source>
        <translation>Im Hintergrund starten, ohne Fenster</translation>
    </message>
    <message>
        <source>Set whether to start at login, and exit</source>
        <translation>Ob beim Anmelden gestartet wird; wird gesichert, dann endet das Programm</translation>
    </message>
    <message>
        <source>Print the version and exit</source>
        <translation>Die Version ausgeben und beenden</translation>
    </message>
    <message>
        <source>Print how long the first frame and the first complete frame took, and exit</source>
        <translation>Gibt aus, wie lange die erste und die erste vollständige Ansicht gedauert haben, und endet</translation>
    </message>
    <message>
        <source>The launcher that is running does not answer.</source>
        <translation>Der laufende Launcher antwortet nicht.</translation>
    </message>
    <message>
        <source>%1 cannot be written.</source>
        <translation>%1 kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>macOS protects this item, and it couldn’t be moved to the Trash.</source>
        <translation>macOS schützt dieses Objekt; es konnte nicht in den Papierkorb gelegt werden.</translation>
    </message>
    <message>
        <source>macOS denied access to this app’s protected data. Grant Tessellar Full Disk Access in System Settings &gt; Privacy &amp; Security, then try again.</source>
        <translation>macOS hat den Zugriff auf die geschützten Daten dieser App verweigert. Geben Sie Tessellar unter Systemeinstellungen &gt; Datenschutz &amp; Sicherheit den Festplattenvollzugriff und versuchen Sie es dann erneut.</translation>
    </message>
    <message>
        <source>It has changed since it was reviewed, and was left alone.</source>
        <translation>Es hat sich seit der Prüfung geändert und blieb unberührt.</translation>
    </message>
    <message>
        <source>It is no longer there.</source>
        <translation>Es ist nicht mehr da.</translation>
    </message>
    <message>
        <source>A volume is mounted in it. Eject it, then try again.</source>
        <translation>Darin ist ein Volume angemeldet. Werfen Sie es aus und versuchen Sie es dann erneut.</translation>
    </message>
    <message>
        <source>The removal was stopped.</source>
        <translation>Das Entfernen wurde angehalten.</translation>
    </message>
    <message>
        <source>It is no longer in the Trash.</source>
        <translation>Es liegt nicht mehr im Papierkorb.</translation>
    </message>
    <message>
        <source>Its Trash could not be searched. Try again later.</source>
        <translation>Der zugehörige Papierkorb konnte nicht durchgesehen werden. Versuchen Sie es später erneut.</translation>
    </message>
    <message>
        <source>It may be with the administrator helper, which does not answer. Try again later.</source>
        <translation>Vielleicht liegt es beim Administrator-Hilfsprogramm, das nicht antwortet. Versuchen Sie es später erneut.</translation>
    </message>
    <message>
        <source>It was not moved, because the removal could not be recorded: %1</source>
        <translation>Es blieb liegen, weil nicht festgehalten werden konnte, was entfernt wird: %1</translation>
    </message>
    <message>
        <source>%1: moved to the Trash.</source>
        <translation>%1: in den Papierkorb gelegt.</translation>
    </message>
    <message>
        <source>%1: it is no longer in its place, but was not found in the Trash.</source>
        <translation>%1: hat seinen Ort verlassen und wurde im Papierkorb nicht gefunden.</translation>
    </message>
    <message>
        <source>administrator approval was canceled.</source>
        <translation>Die Zustimmung des Administrators wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Waiting for %1 to quit…</source>
        <translation>Warten, bis %1 beendet ist …</translation>
    </message>
    <message>
        <source>%1 is still open. Quit it, then try again.</source>
        <translation>%1 ist noch geöffnet. Beenden Sie es und versuchen Sie es dann erneut.</translation>
    </message>
    <message>
        <source>Tessellar could not find out whether %1 is open. Try again.</source>
        <translation>Es ließ sich nicht feststellen, ob %1 geöffnet ist. Versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>Finder did not move the item to the Trash.</source>
        <translation>Der Finder hat das Objekt nicht in den Papierkorb gelegt.</translation>
    </message>
    <message>
        <source>%1: its agent was ended.</source>
        <translation>%1: der zugehörige Agent wurde beendet.</translation>
    </message>
    <message>
        <source>Application</source>
        <translation>Programm</translation>
    </message>
    <message>
        <source>It is a link to the application.</source>
        <translation>Es ist ein Verweis auf das Programm.</translation>
    </message>
    <message>
        <source> It contains files of another application.</source>
        <translation> Darin liegen Dateien eines anderen Programms.</translation>
    </message>
    <message>
        <source>Application Support</source>
        <translation>Application Support</translation>
    </message>
    <message>
        <source>Caches</source>
        <translation>Caches</translation>
    </message>
    <message>
        <source>Logs</source>
        <translation>Protokolle</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Containers</source>
        <translation>Container</translation>
    </message>
    <message>
        <source>Group Containers</source>
        <translation>Gruppen-Container</translation>
    </message>
    <message>
        <source>Saved State</source>
        <translation>Gesicherter Zustand</translation>
    </message>
    <message>
        <source>HTTP Storage</source>
        <translation>HTTP-Speicher</translation>
    </message>
    <message>
        <source>WebKit</source>
        <translation>WebKit</translation>
    </message>
    <message>
        <source>Launch Agents</source>
        <translation>Launch Agents</translation>
    </message>
    <message>
        <source>Launch Daemons</source>
        <translation>Launch Daemons</translation>
    </message>
    <message>
        <source>Helper Tools</source>
        <translation>Hilfsprogramme</translation>
    </message>
    <message>
        <source>Application Scripts</source>
        <translation>Programmskripte</translation>
    </message>
    <message>
        <source>Some selected items are in /Library and need administrator approval.</source>
        <translation>Einige ausgewählte Objekte liegen in /Library und brauchen die Zustimmung eines Administrators.</translation>
    </message>
    <message>
        <source>Needs administrator approval to delete</source>
        <translation>Löschen braucht die Zustimmung eines Administrators</translation>
    </message>
    <message>
        <source>Could not prepare the Finder trash request.</source>
        <translation>Die Papierkorb-Anfrage an den Finder konnte nicht vorbereitet werden.</translation>
    </message>
    <message>
        <source>Finder did not report the result of the trash operation.</source>
        <translation>Der Finder hat das Ergebnis der Papierkorb-Aktion nicht gemeldet.</translation>
    </message>
    <message>
        <source>Finder did not answer in time.</source>
        <translation>Der Finder hat nicht rechtzeitig geantwortet.</translation>
    </message>
    <message>
        <source>Finder could not move the item to the Trash (error 0).</source>
        <translation>Der Finder konnte das Objekt nicht in den Papierkorb legen (Fehler 0).</translation>
    </message>
    <message>
        <source>Finder could not move the item to the Trash.</source>
        <translation>Der Finder konnte das Objekt nicht in den Papierkorb legen.</translation>
    </message>
    <message>
        <source>Finder automation is not allowed. Enable Tessellar under System Settings &gt; Privacy &amp; Security &gt; Automation, then try again.</source>
        <translation>Die Automation des Finders ist nicht erlaubt. Aktivieren Sie Tessellar unter Systemeinstellungen &gt; Datenschutz &amp; Sicherheit &gt; Automation und versuchen Sie es dann erneut.</translation>
    </message>
    <message>
        <source>Finder trash approval was canceled.</source>
        <translation>Die Zustimmung zum Papierkorb des Finders wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Finder could not move the item to the Trash (error %1).</source>
        <translation>Der Finder konnte das Objekt nicht in den Papierkorb legen (Fehler %1).</translation>
    </message>
    <message>
        <source>Approval Needed to Finish</source>
        <translation>Zum Abschluss ist eine Zustimmung nötig</translation>
    </message>
    <message>
        <source>Waiting for approval in System Settings — the uninstall continues automatically.</source>
        <translation>Es wird auf die Zustimmung in den Systemeinstellungen gewartet – das Entfernen geht dann von selbst weiter.</translation>
    </message>
    <message>
        <source>An approval Tessellar needs was turned off in System Settings. Grant it again to finish this uninstall — nothing has been deleted yet.</source>
        <translation>Eine Zustimmung, die Tessellar braucht, wurde in den Systemeinstellungen ausgeschaltet. Erteilen Sie sie erneut, um das Entfernen abzuschließen – bisher wurde nichts gelöscht.</translation>
    </message>
    <message>
        <source>Tessellar’s administrator-helper setup component is missing.</source>
        <translation>Die Einrichtungskomponente für das Administrator-Hilfsprogramm von Tessellar fehlt.</translation>
    </message>
    <message>
        <source>macOS did not register the administrator helper.</source>
        <translation>macOS hat das Administrator-Hilfsprogramm nicht registriert.</translation>
    </message>
    <message>
        <source>macOS returned an unknown administrator-helper status.</source>
        <translation>macOS hat einen unbekannten Status des Administrator-Hilfsprogramms gemeldet.</translation>
    </message>
    <message>
        <source>macOS could not configure Tessellar’s administrator helper.</source>
        <translation>macOS konnte das Administrator-Hilfsprogramm von Tessellar nicht einrichten.</translation>
    </message>
    <message>
        <source>Enable Tessellar’s administrator helper in System Settings, then try again.</source>
        <translation>Aktivieren Sie das Administrator-Hilfsprogramm von Tessellar in den Systemeinstellungen und versuchen Sie es dann erneut.</translation>
    </message>
    <message>
        <source>Runs the signed removal helper only during an uninstall. Required.</source>
        <translation>Führt das signierte Hilfsprogramm nur während des Entfernens aus. Erforderlich.</translation>
    </message>
    <message>
        <source>Someone else listens in the helper&apos;s place.</source>
        <translation>An der Stelle des Hilfsprogramms antwortet jemand anderes.</translation>
    </message>
    <message>
        <source>Could not encode the administrator request.</source>
        <translation>Die Anfrage an den Administrator konnte nicht kodiert werden.</translation>
    </message>
    <message>
        <source>Could not connect to the administrator helper.</source>
        <translation>Es konnte keine Verbindung zum Administrator-Hilfsprogramm hergestellt werden.</translation>
    </message>
    <message>
        <source>The administrator helper returned unreadable data.</source>
        <translation>Das Administrator-Hilfsprogramm hat unlesbare Daten geliefert.</translation>
    </message>
    <message>
        <source>The administrator helper returned an invalid response.</source>
        <translation>Das Administrator-Hilfsprogramm hat ungültig geantwortet.</translation>
    </message>
    <message>
        <source>The application itself.</source>
        <translation>Das Programm selbst.</translation>
    </message>
    <message>
        <source>Its name is the identifier “%1”.</source>
        <translation>Der Name ist die Kennung „%1“.</translation>
    </message>
    <message>
        <source>Its name begins or ends with the identifier “%1”.</source>
        <translation>Der Name beginnt oder endet mit der Kennung „%1“.</translation>
    </message>
    <message>
        <source>It is named “%1” like the application.</source>
        <translation>Es heißt „%1“ wie das Programm.</translation>
    </message>
    <message>
        <source>Its name contains “%1”.</source>
        <translation>Der Name enthält „%1“.</translation>
    </message>
    <message>
        <source>May also belong to %1.</source>
        <translation>Gehört vielleicht auch zu %1.</translation>
    </message>
    <message>
        <source>macOS itself may use it.</source>
        <translation>Vielleicht benutzt macOS selbst es.</translation>
    </message>
    <message>
        <source>The identifier may be more than this application’s.</source>
        <translation>Die Kennung steht vielleicht nicht nur für dieses Programm.</translation>
    </message>
    <message>
        <source>Applications of the same developer may share it.</source>
        <translation>Vielleicht teilen es sich mehrere Programme desselben Entwicklers.</translation>
    </message>
    <message>
        <source>It may be another product’s.</source>
        <translation>Vielleicht gehört es zu einem anderen Produkt.</translation>
    </message>
    <message>
        <source>It starts a program of the application.</source>
        <translation>Es startet einen Teil des Programms.</translation>
    </message>
    <message>
        <source>It is the container of “%1”.</source>
        <translation>Es ist der Container von „%1“.</translation>
    </message>
    <message>
        <source>Its name begins with “%1”, as the identifiers of this developer do.</source>
        <translation>Der Name beginnt mit „%1“ wie die Kennungen dieses Entwicklers.</translation>
    </message>
    <message>
        <source>There is no tile “%1”.</source>
        <translation>Es gibt keine Kachel „%1“.</translation>
    </message>
    <message>
        <source>  (not now)</source>
        <translation>  (jetzt nicht)</translation>
    </message>
    <message>
        <source>What the menu of a tile offers, or that of the background</source>
        <translation>Was das Menü einer Kachel anbietet oder das des Hintergrunds</translation>
    </message>
    <message>
        <source>The entries of a menu, with their shortcuts</source>
        <translation>Die Einträge eines Menüs mit ihren Tastenkürzeln</translation>
    </message>
    <message>
        <source>A tile, by its identifier or app key; without one the background</source>
        <translation>Eine Kachel nach Kennung oder App-Schlüssel; ohne Angabe der Hintergrund</translation>
    </message>
    <message>
        <source>Do what an entry says</source>
        <translation>Tun, was ein Eintrag sagt</translation>
    </message>
    <message>
        <source>The entry, as the list names it</source>
        <translation>Der Eintrag, wie die Liste ihn nennt</translation>
    </message>
    <message>
        <source>“%1” is not available there now.</source>
        <translation>„%1“ wird dort jetzt nicht angeboten.</translation>
    </message>
    <message>
        <source>Continue in the window.</source>
        <translation>Weiter geht es im Fenster.</translation>
    </message>
    <message>
        <source>“%1” continues in the window, which is not open.</source>
        <translation>„%1“ geht im Fenster weiter, und das ist nicht offen.</translation>
    </message>
    <message>
        <source>The arrangement&apos;s identifier</source>
        <translation>Die Kennung der Anordnung</translation>
    </message>
    <message>
        <source>“%1” is not an identifier.</source>
        <translation>„%1“ ist keine Kennung.</translation>
    </message>
    <message>
        <source>Newest first</source>
        <translation>Neueste zuerst</translation>
    </message>
    <message>
        <source>There are no saved arrangements.</source>
        <translation>Es gibt keine gesicherten Anordnungen.</translation>
    </message>
    <message>
        <source>Save the arrangement under a name</source>
        <translation>Die Anordnung unter einem Namen sichern</translation>
    </message>
    <message>
        <source>Its name</source>
        <translation>Ihr Name</translation>
    </message>
    <message>
        <source>Replace a saved arrangement with the current one, under the same name</source>
        <translation>Eine gesicherte Anordnung durch die jetzige ersetzen, unter demselben Namen</translation>
    </message>
    <message>
        <source>Replaced “%1”.</source>
        <translation>„%1“ ersetzt.</translation>
    </message>
    <message>
        <source>Give a saved arrangement another name</source>
        <translation>Einer gesicherten Anordnung einen anderen Namen geben</translation>
    </message>
    <message>
        <source>Renamed to “%1”.</source>
        <translation>Sie heißt jetzt „%1“.</translation>
    </message>
    <message>
        <source>Remove a saved arrangement</source>
        <translation>Eine gesicherte Anordnung entfernen</translation>
    </message>
    <message>
        <source>Deleted “%1”.</source>
        <translation>„%1“ gelöscht.</translation>
    </message>
    <message>
        <source>Replace the current arrangement with a saved one</source>
        <translation>Die jetzige Anordnung durch eine gesicherte ersetzen</translation>
    </message>
    <message>
        <source>Restored “%1”.</source>
        <translation>„%1“ wiederhergestellt.</translation>
    </message>
    <message>
        <source>Export a saved arrangement to a new file</source>
        <translation>Eine gesicherte Anordnung in eine Datei kopieren, die es noch nicht gibt</translation>
    </message>
    <message>
        <source>The new file</source>
        <translation>Die neue Datei</translation>
    </message>
    <message>
        <source>Exported “%1”.</source>
        <translation>„%1“ exportiert.</translation>
    </message>
    <message>
        <source>Add an exported arrangement to the saved ones</source>
        <translation>Eine exportierte Anordnung zu den gesicherten aufnehmen</translation>
    </message>
    <message>
        <source>An exported file</source>
        <translation>Eine exportierte Datei</translation>
    </message>
    <message>
        <source>Imported “%1”.</source>
        <translation>„%1“ importiert.</translation>
    </message>
    <message>
        <source>Undo the last change to the saved arrangements</source>
        <translation>Die letzte Änderung der gesicherten Anordnungen zurücknehmen</translation>
    </message>
    <message>
        <source>Undid: %1.</source>
        <translation>Widerrufen: %1.</translation>
    </message>
    <message>
        <source>Redo the change that was undone</source>
        <translation>Die zurückgenommene Änderung wieder ausführen</translation>
    </message>
    <message>
        <source>Redid: %1.</source>
        <translation>Wiederholt: %1.</translation>
    </message>
    <message>
        <source>The saved arrangements of the display mode</source>
        <translation>Die gesicherten Anordnungen des Anzeigemodus</translation>
    </message>
    <message>
        <source>at least %1</source>
        <translation>mindestens %1</translation>
    </message>
    <message>
        <source>1 item</source>
        <translation>1 Objekt</translation>
    </message>
    <message numerus="yes">
        <source>%n items</source>
        <translation>
            <numerusform>%n Objekt</numerusform>
            <numerusform>%n Objekte</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 will stay</source>
        <translation>%1 bleiben</translation>
    </message>
    <message>
        <source>Another removal is being reviewed.</source>
        <translation>Ein anderes Entfernen wird gerade geprüft.</translation>
    </message>
    <message>
        <source>The review was closed meanwhile.</source>
        <translation>Die Prüfung wurde inzwischen geschlossen.</translation>
    </message>
    <message>
        <source>The removal was cancelled.</source>
        <translation>Das Entfernen wurde abgebrochen.</translation>
    </message>
    <message>
        <source>What a removal of an application could take</source>
        <translation>Was beim Entfernen eines Programms wegfallen könnte</translation>
    </message>
    <message>
        <source>%1 is not a list of paths: neither a JSON array nor the output of cleanup review.</source>
        <translation>%1 ist keine Liste von Pfaden: ein JSON-Array oder die Antwort von cleanup review.</translation>
    </message>
    <message>
        <source>%1 cannot be read.</source>
        <translation>%1 kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>“%1” is not among the items of the review.</source>
        <translation>„%1“ gehört nicht zu den geprüften Objekten.</translation>
    </message>
    <message>
        <source>“%1” has changed since it was reviewed.</source>
        <translation>„%1“ hat sich seit der Prüfung geändert.</translation>
    </message>
    <message>
        <source>%1 is open and would be asked to quit.
</source>
        <translation>%1 ist geöffnet und würde gebeten, sich zu beenden.
</translation>
    </message>
    <message>
        <source>%1Nothing was removed; add --yes to continue.</source>
        <translation>%1Es wurde nichts entfernt; mit --yes geht es weiter.</translation>
    </message>
    <message>
        <source>Move an application and the files that surely belong to it to the Trash</source>
        <translation>Ein Programm und was sicher dazugehört in den Papierkorb legen</translation>
    </message>
    <message>
        <source>Also files that may belong to something else</source>
        <translation>Auch was zu etwas anderem gehören könnte</translation>
    </message>
    <message>
        <source>Only these items: a file with their paths as a JSON array, or with the output of a review</source>
        <translation>Nur diese Objekte: eine Datei mit ihren Pfaden als JSON-Array oder mit der Antwort einer Prüfung</translation>
    </message>
    <message>
        <source>Do it, and ask the application to quit if it is open</source>
        <translation>Ausführen und das Programm, falls es geöffnet ist, bitten, sich zu beenden</translation>
    </message>
    <message>
        <source>brought back</source>
        <translation>zurückgeholt</translation>
    </message>
    <message>
        <source>%1 in the Trash</source>
        <translation>%1 im Papierkorb</translation>
    </message>
    <message>
        <source>The past removals, latest first</source>
        <translation>Was früher entfernt wurde, das Letzte zuerst</translation>
    </message>
    <message>
        <source>Put back what a removal moved to the Trash</source>
        <translation>Zurückholen, was entfernt wurde</translation>
    </message>
    <message>
        <source>Which one, as listed by history; by default the last one</source>
        <translation>Welches, wie history es aufführt; ohne Angabe das letzte</translation>
    </message>
    <message>
        <source>There is no removal “%1”.</source>
        <translation>Es gibt keine Entfernung „%1“.</translation>
    </message>
    <message>
        <source>The removal helper</source>
        <translation>Das Hilfsprogramm zum Entfernen</translation>
    </message>
    <message>
        <source>Whether the helper answers</source>
        <translation>Ob das Hilfsprogramm antwortet</translation>
    </message>
    <message>
        <source>The removal helper answers.</source>
        <translation>Das Hilfsprogramm zum Entfernen antwortet.</translation>
    </message>
    <message>
        <source>Remove applications with what they left</source>
        <translation>Programme mit allem entfernen, was sie hinterlassen haben</translation>
    </message>
    <message>
        <source>The machine is the folder DIR, which holds a Mac&apos;s layout</source>
        <translation>Der Rechner ist der Ordner DIR, der den Aufbau eines Macs enthält</translation>
    </message>
    <message>
        <source>The user&apos;s home, if the machine has several</source>
        <translation>Wessen Anordnung, wenn der Rechner mehrere Benutzer hat</translation>
    </message>
    <message>
        <source>The display mode: fullScreen (the default) or windowed</source>
        <translation>Der Anzeigemodus: fullScreen (üblich) oder windowed</translation>
    </message>
    <message>
        <source>The time to use instead of now, such as 2026-11-14T21:05:40Z</source>
        <translation>Was als Gegenwart gilt, etwa 2026-11-14T21:05:40Z</translation>
    </message>
    <message>
        <source>Answer with a JSON document</source>
        <translation>Mit einem JSON-Dokument antworten</translation>
    </message>
    <message>
        <source>List the commands and exit</source>
        <translation>Die Befehle auflisten und beenden</translation>
    </message>
    <message>
        <source>Before the command:</source>
        <translation>Vor dem Befehl:</translation>
    </message>
    <message>
        <source>batch FILE takes one command a line from a file, or with - from standard input.
The exit status is 0 when it was done, 1 when it was refused or failed, 2 for wrong usage.</source>
        <translation>batch DATEI nimmt einen Befehl je Zeile aus einer Datei oder mit - von der Standardeingabe.
Der Exit-Status ist 0, wenn es getan wurde, 1, wenn es abgelehnt wurde oder misslang, 2 bei falschem Aufruf.</translation>
    </message>
    <message>
        <source>Everything that the launcher can do without a pointer.</source>
        <translation>Alles, was der Launcher ohne Zeiger kann.</translation>
    </message>
    <message>
        <source>Name a command; tessellarctl --help lists them.</source>
        <translation>Nennen Sie einen Befehl; tessellarctl --help führt sie auf.</translation>
    </message>
    <message>
        <source>There is no command “%1”; tessellarctl --help lists them.</source>
        <translation>Es gibt keinen Befehl „%1“; tessellarctl --help führt sie auf.</translation>
    </message>
    <message>
        <source>“%1” takes one of these words: %2.</source>
        <translation>„%1“ nimmt eines dieser Wörter: %2.</translation>
    </message>
    <message>
        <source>The application&apos;s bundle identifier, or the path of one of several copies</source>
        <translation>Die Bundle-Kennung des Programms oder der Pfad einer von mehreren Kopien</translation>
    </message>
    <message>
        <source>The launcher ended before it had answered.</source>
        <translation>Der Launcher wurde beendet, bevor er geantwortet hatte.</translation>
    </message>
    <message>
        <source>The launcher does not answer.</source>
        <translation>Der Launcher antwortet nicht.</translation>
    </message>
    <message>
        <source>A tile, by its identifier or app key</source>
        <translation>Eine Kachel nach Kennung oder App-Schlüssel</translation>
    </message>
    <message>
        <source>Tiles, by identifier or app key</source>
        <translation>Kacheln nach Kennung oder App-Schlüssel</translation>
    </message>
    <message>
        <source>PAGE:INDEX or FOLDER/PAGE:INDEX, counted from 0; without INDEX the page&apos;s end</source>
        <translation>SEITE:INDEX oder ORDNER/SEITE:INDEX, von 0 gezählt; ohne INDEX das Ende der Seite</translation>
    </message>
    <message>
        <source>“%1” is not a place: write PAGE:INDEX or FOLDER/PAGE:INDEX.</source>
        <translation>„%1“ ist kein Ort; schreiben Sie SEITE:INDEX oder ORDNER/SEITE:INDEX.</translation>
    </message>
    <message>
        <source>Move tiles to a place</source>
        <translation>Kacheln an einen Ort bewegen</translation>
    </message>
    <message>
        <source>Group tiles with another: into it, if it is a folder, or into a new folder</source>
        <translation>Kacheln mit einer anderen zusammenlegen: in sie hinein oder in einen neuen Ordner</translation>
    </message>
    <message>
        <source>The tile that they are dropped on</source>
        <translation>Die Kachel, auf der sie abgelegt werden</translation>
    </message>
    <message>
        <source>Replace a folder with its tiles</source>
        <translation>Die Kacheln eines Ordners an seine Stelle setzen</translation>
    </message>
    <message>
        <source>Sort a page by name, or everything</source>
        <translation>Eine Seite nach Namen sortieren oder alles</translation>
    </message>
    <message>
        <source>PAGE or FOLDER/PAGE; without it everything</source>
        <translation>SEITE oder ORDNER/SEITE; ohne Angabe alles</translation>
    </message>
    <message>
        <source>Give a folder or an application another name</source>
        <translation>Einem Ordner oder einem Programm einen anderen Namen geben</translation>
    </message>
    <message>
        <source>The new name</source>
        <translation>Der neue Name</translation>
    </message>
    <message>
        <source>Restore the application&apos;s own name</source>
        <translation>Zurück zu dem, wie das Programm sich selbst nennt</translation>
    </message>
    <message>
        <source>Show a symbol on a folder; none clears it</source>
        <translation>Ein Symbol auf einem Ordner zeigen; none entfernt es</translation>
    </message>
    <message>
        <source>Its name, or none</source>
        <translation>Sein Name oder none</translation>
    </message>
    <message>
        <source>Hide applications from the grid</source>
        <translation>Programme im Raster ausblenden</translation>
    </message>
    <message>
        <source>Show a hidden application again</source>
        <translation>Ein ausgeblendetes Programm wieder einblenden</translation>
    </message>
    <message>
        <source>Second tiles for applications</source>
        <translation>Zweite Kacheln für Programme</translation>
    </message>
    <message>
        <source>A second tile for an application</source>
        <translation>Eine zweite Kachel für ein Programm</translation>
    </message>
    <message>
        <source>Remove alias tiles</source>
        <translation>Alias-Kacheln entfernen</translation>
    </message>
    <message>
        <source>Undo the last edit</source>
        <translation>Die letzte Änderung zurücknehmen</translation>
    </message>
    <message>
        <source>Redo the last undone edit</source>
        <translation>Die zuletzt zurückgenommene Änderung wieder ausführen</translation>
    </message>
    <message>
        <source>What can be undone and redone, oldest first</source>
        <translation>Was widerrufen und wiederholt werden kann, das Älteste zuerst</translation>
    </message>
    <message>
        <source>Undo %1
</source>
        <translation>Widerrufen: %1
</translation>
    </message>
    <message>
        <source>Redo %1
</source>
        <translation>Wiederholen: %1
</translation>
    </message>
    <message>
        <source>Wait until every edit is on the disk, as a batch does at its end</source>
        <translation>Warten, bis jede Änderung gesichert ist, wie es ein Stapel am Ende tut</translation>
    </message>
    <message>
        <source>Select tiles; none clears the selection</source>
        <translation>Kacheln auswählen; ohne Angabe wird die Auswahl aufgehoben</translation>
    </message>
    <message>
        <source>There is nothing to cut, copy or paste there.</source>
        <translation>Dort gibt es nichts auszuschneiden, zu kopieren oder einzusetzen.</translation>
    </message>
    <message>
        <source>Copy tiles to the clipboard</source>
        <translation>Kacheln in die Zwischenablage kopieren</translation>
    </message>
    <message>
        <source>Cut tiles: they move when they are pasted</source>
        <translation>Kacheln ausschneiden: beim Einsetzen werden sie bewegt</translation>
    </message>
    <message>
        <source>Paste after the selected tile, or at a place</source>
        <translation>Nach der ausgewählten Kachel oder an einem Ort einsetzen</translation>
    </message>
    <message>
        <source>Applications by name, best first</source>
        <translation>Programme nach Namen, das beste zuerst</translation>
    </message>
    <message>
        <source>What to look for</source>
        <translation>Wonach gesucht wird</translation>
    </message>
    <message>
        <source>All that is known of an application</source>
        <translation>Alles, was über ein Programm bekannt ist</translation>
    </message>
    <message>
        <source> (not available)</source>
        <translation> (nicht verfügbar)</translation>
    </message>
    <message>
        <source> (smart folder)
</source>
        <translation> (intelligenter Ordner)
</translation>
    </message>
    <message>
        <source>%1Page %2
</source>
        <translation>%1Seite %2
</translation>
    </message>
    <message>
        <source>There are no applications.</source>
        <translation>Es gibt keine Programme.</translation>
    </message>
    <message>
        <source>Scan for applications and list them</source>
        <translation>Nach Programmen suchen und ausgeben, was gefunden wird</translation>
    </message>
    <message>
        <source>The launcher is not running.</source>
        <translation>Der Launcher läuft nicht.</translation>
    </message>
    <message>
        <source>Print the arrangement: the working layout, in the form of its file with --json</source>
        <translation>Die Anordnung ausgeben: das geltende Layout, mit --json in der Form seiner Datei</translation>
    </message>
    <message>
        <source>Back to the default alphabetical arrangement</source>
        <translation>Zurück zur üblichen alphabetischen Anordnung</translation>
    </message>
    <message>
        <source>Layout reset to the default alphabetical arrangement.</source>
        <translation>Das Layout wurde auf die übliche alphabetische Anordnung zurückgesetzt.</translation>
    </message>
    <message>
        <source>Show the running launcher&apos;s window</source>
        <translation>Den laufenden Launcher nach vorn holen</translation>
    </message>
    <message>
        <source>Hide its window</source>
        <translation>Sein Fenster ausblenden</translation>
    </message>
    <message>
        <source>Show its window, or hide it if it is shown</source>
        <translation>Sein Fenster zeigen oder, wenn es zu sehen ist, ausblenden</translation>
    </message>
    <message>
        <source>Save everything and quit it</source>
        <translation>Ihn beenden, nachdem alles gesichert ist</translation>
    </message>
    <message>
        <source>Start an application</source>
        <translation>Ein Programm starten</translation>
    </message>
    <message>
        <source>Page %1
</source>
        <translation>Seite %1
</translation>
    </message>
    <message>
        <source>Import the old Launchpad&apos;s arrangement</source>
        <translation>Die Anordnung des alten Launchpad übernehmen</translation>
    </message>
    <message>
        <source>Its database, if not the system&apos;s</source>
        <translation>Seine Datenbank, wenn es nicht die des Systems ist</translation>
    </message>
    <message>
        <source>Only print what would be imported</source>
        <translation>Nur ausgeben, was importiert würde</translation>
    </message>
    <message>
        <source>Custom icons for applications</source>
        <translation>Eigene Symbole für Programme</translation>
    </message>
    <message>
        <source>Give an application the icon in an .icns file</source>
        <translation>Einem Programm das Symbol aus einer .icns-Datei geben</translation>
    </message>
    <message>
        <source>An .icns file, of which a copy is kept</source>
        <translation>Eine .icns-Datei, von der eine Kopie behalten wird</translation>
    </message>
    <message>
        <source>Where the copy of an application&apos;s own icon lies</source>
        <translation>Wo die Kopie des eigenen Symbols eines Programms liegt</translation>
    </message>
    <message>
        <source>“%1” has no custom icon.</source>
        <translation>„%1“ hat kein eigenes Symbol.</translation>
    </message>
    <message>
        <source>Back to the application&apos;s own icon</source>
        <translation>Zurück zum Symbol, das das Programm mitbringt</translation>
    </message>
    <message>
        <source>The applications that have a custom icon</source>
        <translation>Die Programme mit eigenem Symbol</translation>
    </message>
    <message>
        <source>No application has a custom icon.</source>
        <translation>Kein Programm hat ein eigenes Symbol.</translation>
    </message>
    <message>
        <source>The system&apos;s limit on watched folders was reached: some folders are checked every ten seconds instead.</source>
        <translation>Das System kann keine weiteren Ordner beobachten: einige werden alle zehn Sekunden angesehen.</translation>
    </message>
    <message>
        <source>Print changes to the applications until stopped</source>
        <translation>Änderungen an den Programmen ausgeben, bis es angehalten wird</translation>
    </message>
    <message>
        <source>Print this help message and exit</source>
        <translation>Diese Hilfe ausgeben und enden</translation>
    </message>
    <message>
        <source>page %1</source>
        <translation>Seite %1</translation>
    </message>
    <message>
        <source>, removed</source>
        <translation>, entfernt</translation>
    </message>
    <message>
        <source>The remembered places of applications that are gone</source>
        <translation>Die gemerkten Plätze verschwundener Programme</translation>
    </message>
    <message>
        <source>In the order of the arrangement</source>
        <translation>In der Reihenfolge der Anordnung</translation>
    </message>
    <message>
        <source>No places are remembered.</source>
        <translation>Es sind keine Plätze gemerkt.</translation>
    </message>
    <message>
        <source>Forget the place of an application, or all</source>
        <translation>Den Platz eines Programms vergessen oder alle</translation>
    </message>
    <message>
        <source>Its key or path; without it all are forgotten</source>
        <translation>Sein Schlüssel oder Pfad; ohne Angabe werden alle vergessen</translation>
    </message>
    <message>
        <source>No place is remembered for “%1”.</source>
        <translation>Für „%1“ ist kein Platz gemerkt.</translation>
    </message>
    <message>
        <source>What is hidden, has no tile, or has gone and may come back</source>
        <translation>Was ausgeblendet ist, keine Kachel hat oder verschwunden ist und wiederkommen kann</translation>
    </message>
    <message>
        <source>Everything is on the pages.</source>
        <translation>Alles ist auf den Seiten.</translation>
    </message>
    <message>
        <source>The backups of the arrangement</source>
        <translation>Die Sicherungen der Anordnung</translation>
    </message>
    <message>
        <source>There are no backups.</source>
        <translation>Es gibt keine Sicherungen.</translation>
    </message>
    <message>
        <source>Replace the current arrangement with a backup</source>
        <translation>Die jetzige Anordnung durch eine Sicherung ersetzen</translation>
    </message>
    <message>
        <source>As listed</source>
        <translation>Wie aufgelistet</translation>
    </message>
    <message>
        <source>The backup was restored.</source>
        <translation>Die Sicherung wurde wiederhergestellt.</translation>
    </message>
    <message>
        <source>Another program is changing the arrangement%1. Try again in a moment.</source>
        <translation>Ein anderes Programm ändert gerade die Anordnung%1. Versuchen Sie es gleich noch einmal.</translation>
    </message>
    <message>
        <source>Tessellar has full disk access.</source>
        <translation>Tessellar hat Festplattenvollzugriff.</translation>
    </message>
    <message>
        <source>Tessellar has no full disk access: a removal does not find what applications left in guarded folders. System Settings &gt; Privacy &amp; Security &gt; Full Disk Access grants it.</source>
        <translation>Tessellar hat keinen Festplattenvollzugriff: Beim Entfernen wird nicht gefunden, was Programme in geschützten Ordnern hinterlassen haben. Systemeinstellungen &gt; Datenschutz &amp; Sicherheit &gt; Festplattenvollzugriff erteilt ihn.</translation>
    </message>
    <message>
        <source>This system does not restrict which folders Tessellar may read.</source>
        <translation>Dieses System schützt keine Ordner vor Tessellar.</translation>
    </message>
    <message>
        <source>The settings could not be read.</source>
        <translation>Die Einstellungen konnten nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Whether Tessellar has full disk access</source>
        <translation>Ob Tessellar vollen Festplattenzugriff hat</translation>
    </message>
    <message>
        <source>(not set)</source>
        <translation>(nicht gesetzt)</translation>
    </message>
    <message>
        <source> (the default)</source>
        <translation> (üblich)</translation>
    </message>
    <message>
        <source>%1 = %2 (not used here)
</source>
        <translation>%1 = %2 (hier nicht benutzt)
</translation>
    </message>
    <message>
        <source>What the user has set</source>
        <translation>Was der Benutzer eingestellt hat</translation>
    </message>
    <message>
        <source>Every setting, with its current value and the allowed ones</source>
        <translation>Jede Einstellung mit dem, was gilt und was möglich ist</translation>
    </message>
    <message>
        <source>One setting</source>
        <translation>Eine Einstellung</translation>
    </message>
    <message>
        <source>“%1” is not set.</source>
        <translation>„%1“ ist nicht gesetzt.</translation>
    </message>
    <message>
        <source>Store a setting; null removes it</source>
        <translation>Eine Einstellung sichern; null entfernt sie</translation>
    </message>
    <message>
        <source>JSON or plain text</source>
        <translation>JSON, sonst Text</translation>
    </message>
    <message>
        <source>The line ends in a backslash.</source>
        <translation>Die Zeile endet mit einem umgekehrten Schrägstrich.</translation>
    </message>
    <message>
        <source>A quote is not closed.</source>
        <translation>Ein Anführungszeichen ist nicht geschlossen.</translation>
    </message>
    <message>
        <source>%1 Smart Folders are called “%2”: name one by its identifier.</source>
        <translation>%1 intelligente Ordner heißen „%2“: nennen Sie einen mit seiner Kennung.</translation>
    </message>
    <message>
        <source>There is no Smart Folder “%1”.</source>
        <translation>Es gibt keinen intelligenten Ordner „%1“.</translation>
    </message>
    <message>
        <source>“%1” is not a date.</source>
        <translation>„%1“ ist kein Datum.</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>What is known of applications</source>
        <translation>Was über Programme bekannt ist</translation>
    </message>
    <message>
        <source>One application; without it all</source>
        <translation>Ein Programm; ohne Angabe alle</translation>
    </message>
    <message>
        <source>What a smart folder can be made from</source>
        <translation>Woraus ein intelligenter Ordner gemacht werden kann</translation>
    </message>
    <message>
        <source>All smart folders</source>
        <translation>Alle intelligenten Ordner</translation>
    </message>
    <message>
        <source>One smart folder&apos;s definition</source>
        <translation>Die Definition eines intelligenten Ordners</translation>
    </message>
    <message>
        <source>Its identifier or name</source>
        <translation>Seine Kennung oder sein Name</translation>
    </message>
    <message>
        <source>Make a smart folder from a template or a file</source>
        <translation>Einen intelligenten Ordner aus einer Vorlage oder einer Datei anlegen</translation>
    </message>
    <message>
        <source>A definition in the form of the registry</source>
        <translation>Eine Definition in der Form des Verzeichnisses</translation>
    </message>
    <message>
        <source>The template&apos;s name</source>
        <translation>Der Name der Vorlage</translation>
    </message>
    <message>
        <source>Name a file, or a template with --template.</source>
        <translation>Nennen Sie eine Datei oder mit --template eine Vorlage.</translation>
    </message>
    <message>
        <source>There is no template “%1”.</source>
        <translation>Es gibt keine Vorlage „%1“.</translation>
    </message>
    <message>
        <source>Replace a smart folder&apos;s definition with the one in a file</source>
        <translation>Einem intelligenten Ordner die Definition aus einer Datei geben</translation>
    </message>
    <message>
        <source>Delete a smart folder and its tiles in both modes</source>
        <translation>Einen intelligenten Ordner und seine Kacheln in beiden Modi löschen</translation>
    </message>
    <message>
        <source>Give a smart folder a tile in the display mode</source>
        <translation>Einem intelligenten Ordner im Anzeigemodus eine Kachel geben</translation>
    </message>
    <message>
        <source>Remove a smart folder&apos;s tile from the display mode, even if it has no definition</source>
        <translation>Die Kachel eines intelligenten Ordners aus dem Anzeigemodus nehmen, auch wenn die Definition fehlt</translation>
    </message>
    <message>
        <source>Its identifier, or its name</source>
        <translation>Seine Kennung oder sein Name</translation>
    </message>
    <message>
        <source>Recover from a registry that could not be read</source>
        <translation>Mit einem Verzeichnis umgehen, das nicht gelesen werden konnte</translation>
    </message>
    <message>
        <source>restore: put it back and try again; replace: start with an empty one</source>
        <translation>restore: zurücklegen und erneut versuchen; replace: mit einem leeren beginnen</translation>
    </message>
    <message>
        <source>recover takes restore or replace.</source>
        <translation>recover nimmt restore oder replace.</translation>
    </message>
    <message>
        <source>What a smart folder shows, in order</source>
        <translation>Was ein intelligenter Ordner zeigt, der Reihe nach</translation>
    </message>
    <message>
        <source>Use a definition in a file instead</source>
        <translation>Stattdessen eine Definition aus einer Datei</translation>
    </message>
    <message>
        <source>The time, such as 2026-11-14T21:05:40Z</source>
        <translation>Die Zeit, etwa 2026-11-14T21:05:40Z</translation>
    </message>
    <message>
        <source>The locale for texts and weeks</source>
        <translation>Das Gebietsschema für Texte und Wochen</translation>
    </message>
    <message>
        <source>Name a Smart Folder, or a file with --definition.</source>
        <translation>Nennen Sie einen intelligenten Ordner oder mit --definition eine Datei.</translation>
    </message>
    <message>
        <source>Folders whose contents are determined by rules</source>
        <translation>Ordner, deren Inhalt sich aus Regeln ergibt</translation>
    </message>
    <message>
        <source>--mode is fullScreen or windowed.</source>
        <translation>--mode ist fullScreen oder windowed.</translation>
    </message>
    <message>
        <source>%1 needs a value, or is not an option.</source>
        <translation>%1 braucht einen Wert oder ist keine Option.</translation>
    </message>
    <message>
        <source>--now takes a date such as 2026-11-14T21:05:40Z.</source>
        <translation>--now nimmt ein Datum wie 2026-11-14T21:05:40Z.</translation>
    </message>
    <message>
        <source>There is no option %1.</source>
        <translation>Es gibt keine Option %1.</translation>
    </message>
    <message>
        <source>batch takes one file, or - for standard input.</source>
        <translation>batch nimmt eine Datei oder - für die Standardeingabe.</translation>
    </message>
    <message>
        <source>The batch is too large.</source>
        <translation>Der Stapel ist zu groß.</translation>
    </message>
    <message>
        <source>Not checked</source>
        <translation>Nicht geprüft</translation>
    </message>
    <message>
        <source>The command was cancelled.</source>
        <translation>Der Befehl wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The results of the last check; contacts nothing and runs no tools</source>
        <translation>Was die letzte Suche ergab; es wird nichts gefragt, auch nicht Homebrew</translation>
    </message>
    <message>
        <source>One application; without it all that can be checked</source>
        <translation>Ein Programm; ohne Angabe alles, was geprüft werden kann</translation>
    </message>
    <message>
        <source>First ask tools which applications they manage</source>
        <translation>Zuerst die Werkzeuge fragen, wessen Programme es sind</translation>
    </message>
    <message>
        <source>The applications without a clear result, and why</source>
        <translation>Die Programme ohne klare Antwort, mit dem Grund</translation>
    </message>
    <message>
        <source>Where version information of applications comes from</source>
        <translation>Woher die Angaben zu den Versionen der Programme kommen</translation>
    </message>
    <message>
        <source>Checked %1 of %2  %3</source>
        <translation>%1 von %2 geprüft  %3</translation>
    </message>
    <message>
        <source>The check was cancelled.</source>
        <translation>Die Prüfung wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Check for newer versions now; with --json one document a line: each result as it arrives, then a summary</source>
        <translation>Jetzt nach neueren Versionen suchen; mit --json ein Dokument je Zeile, jedes Ergebnis, wie es kommt, und am Ende eine Zusammenfassung</translation>
    </message>
    <message>
        <source>Of the applications of this channel only</source>
        <translation>Nur die Programme dieses Kanals</translation>
    </message>
    <message>
        <source>Update applications, each through its own source; a running update continues when the launcher quits, and the next launcher resumes following it</source>
        <translation>Programme auf den neuesten Stand bringen, auf dem Weg, auf dem ihre Updates kommen; ein begonnenes Update läuft weiter, wenn der Launcher endet, und wird vom nächsten aufgegriffen</translation>
    </message>
    <message>
        <source>Applications, one after the other</source>
        <translation>Programme, eins nach dem anderen</translation>
    </message>
    <message>
        <source>All that Homebrew or Microsoft AutoUpdate can update</source>
        <translation>Alle, die Homebrew oder Microsoft AutoUpdate aktualisieren kann</translation>
    </message>
    <message>
        <source>Do not ask before updating</source>
        <translation>Vor dem Aktualisieren nicht fragen</translation>
    </message>
    <message>
        <source>Name an application, or use --all.</source>
        <translation>Nennen Sie ein Programm oder verwenden Sie --all.</translation>
    </message>
    <message>
        <source>%1 %2 Add --yes to continue.</source>
        <translation>%1 %2 Mit --yes geht es weiter.</translation>
    </message>
    <message>
        <source>There is nothing to update.</source>
        <translation>Es gibt nichts zu aktualisieren.</translation>
    </message>
    <message>
        <source>Skip the version that is available now</source>
        <translation>Die Version, die jetzt verfügbar ist, nicht anbieten</translation>
    </message>
    <message>
        <source>Skip every version of this application</source>
        <translation>Auch keine andere Version dieses Programms</translation>
    </message>
    <message>
        <source>Offer all versions of an application again</source>
        <translation>Alle Versionen eines Programms wieder anbieten</translation>
    </message>
    <message>
        <source>Newer versions of installed applications</source>
        <translation>Neuere Versionen der installierten Programme</translation>
    </message>
    <message>
        <source>Item %1</source>
        <translation>Objekt %1</translation>
    </message>
    <message>
        <source>Import old Launchpad configuration?</source>
        <translation>Alte Launchpad-Konfiguration importieren?</translation>
    </message>
    <message>
        <source>Imported old Launchpad configuration</source>
        <translation>Alte Launchpad-Konfiguration importiert</translation>
    </message>
    <message>
        <source>Found %1 apps, %2 folders, and %3 layout items.</source>
        <translation>%1 Apps, %2 Ordner und %3 Objekte im Layout gefunden.</translation>
    </message>
    <message>
        <source>A backup of the previous Tessellar layout was saved.</source>
        <translation>Eine Sicherung des bisherigen Layouts von Tessellar wurde angelegt.</translation>
    </message>
    <message>
        <source>Could not import old Launchpad configuration</source>
        <translation>Die alte Launchpad-Konfiguration konnte nicht importiert werden</translation>
    </message>
    <message>
        <source>The current user’s Darwin directory could not be resolved.</source>
        <translation>Das Darwin-Verzeichnis des Benutzers konnte nicht bestimmt werden.</translation>
    </message>
    <message>
        <source>No legacy Launchpad database was found on this Mac.</source>
        <translation>Auf diesem Mac wurde keine alte Launchpad-Datenbank gefunden.</translation>
    </message>
    <message>
        <source>The legacy Launchpad database could not be opened read-only.</source>
        <translation>Die alte Launchpad-Datenbank konnte nicht schreibgeschützt geöffnet werden.</translation>
    </message>
    <message>
        <source>A legacy Launchpad database was found, but its schema is not supported.</source>
        <translation>Es wurde eine alte Launchpad-Datenbank gefunden, aber ihr Schema wird nicht unterstützt.</translation>
    </message>
    <message>
        <source>The legacy Launchpad database could not be read.</source>
        <translation>Die alte Launchpad-Datenbank konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The legacy Launchpad database did not contain any importable apps or folders.</source>
        <translation>Die alte Launchpad-Datenbank enthält keine Apps oder Ordner, die importiert werden könnten.</translation>
    </message>
    <message>
        <source>The import was cancelled.</source>
        <translation>Der Import wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Missing required table: %1</source>
        <translation>Eine nötige Tabelle fehlt: %1</translation>
    </message>
    <message>
        <source>%1 is missing columns: %2</source>
        <translation>In %1 fehlen Spalten: %2</translation>
    </message>
    <message>
        <source>There are too many rows.</source>
        <translation>Es sind zu viele Zeilen.</translation>
    </message>
    <message>
        <source>The database kept changing while it was copied.</source>
        <translation>Die Datenbank änderte sich immer wieder, während sie kopiert wurde.</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Move Tile</source>
        <translation>Kachel bewegen</translation>
    </message>
    <message>
        <source>Move Tiles</source>
        <translation>Kacheln bewegen</translation>
    </message>
    <message>
        <source>Group Tiles</source>
        <translation>Kacheln gruppieren</translation>
    </message>
    <message>
        <source>Ungroup Tiles</source>
        <translation>Gruppierung auflösen</translation>
    </message>
    <message>
        <source>Rename Folder</source>
        <translation>Ordner umbenennen</translation>
    </message>
    <message>
        <source>Rename App</source>
        <translation>App umbenennen</translation>
    </message>
    <message>
        <source>Revert App Name</source>
        <translation>App-Namen zurücksetzen</translation>
    </message>
    <message>
        <source>Hide App</source>
        <translation>App ausblenden</translation>
    </message>
    <message>
        <source>Hide Apps</source>
        <translation>Apps ausblenden</translation>
    </message>
    <message>
        <source>Unhide App</source>
        <translation>App einblenden</translation>
    </message>
    <message>
        <source>Paste Tile</source>
        <translation>Kachel einsetzen</translation>
    </message>
    <message>
        <source>Paste Tiles</source>
        <translation>Kacheln einsetzen</translation>
    </message>
    <message>
        <source>Create Alias</source>
        <translation>Alias erstellen</translation>
    </message>
    <message>
        <source>Remove Alias</source>
        <translation>Alias entfernen</translation>
    </message>
    <message>
        <source>Remove Aliases</source>
        <translation>Aliasse entfernen</translation>
    </message>
    <message>
        <source>Sort by Name</source>
        <translation>Nach Namen sortieren</translation>
    </message>
    <message>
        <source>Change Folder Symbol</source>
        <translation>Ordnersymbol ändern</translation>
    </message>
    <message>
        <source>Add Smart Folder</source>
        <translation>Intelligenten Ordner hinzufügen</translation>
    </message>
    <message>
        <source>Edit Smart Folder</source>
        <translation>Intelligenten Ordner bearbeiten</translation>
    </message>
    <message>
        <source>Delete Smart Folder</source>
        <translation>Intelligenten Ordner löschen</translation>
    </message>
    <message>
        <source>Move App to Trash</source>
        <translation>App in den Papierkorb legen</translation>
    </message>
    <message>
        <source>Move Apps to Trash</source>
        <translation>Apps in den Papierkorb legen</translation>
    </message>
    <message>
        <source>Import Launchpad Layout</source>
        <translation>Launchpad-Layout importieren</translation>
    </message>
    <message>
        <source>Remove Smart Folder Tile</source>
        <translation>Kachel des intelligenten Ordners entfernen</translation>
    </message>
    <message>
        <source>Restore Arrangement</source>
        <translation>Anordnung wiederherstellen</translation>
    </message>
    <message>
        <source>Restore Backup</source>
        <translation>Sicherung wiederherstellen</translation>
    </message>
    <message>
        <source>Reset Layout</source>
        <translation>Layout zurücksetzen</translation>
    </message>
    <message>
        <source>Put App Back</source>
        <translation>App zurücklegen</translation>
    </message>
    <message>
        <source>Put Apps Back</source>
        <translation>Apps zurücklegen</translation>
    </message>
    <message>
        <source>Select at least one tile.</source>
        <translation>Wählen Sie mindestens eine Kachel aus.</translation>
    </message>
    <message>
        <source>The tile is no longer in this layout.</source>
        <translation>Die Kachel ist nicht mehr in diesem Layout.</translation>
    </message>
    <message>
        <source>The folder is no longer in this layout.</source>
        <translation>Der Ordner ist nicht mehr in diesem Layout.</translation>
    </message>
    <message>
        <source>There is no such place in this layout.</source>
        <translation>Diesen Platz gibt es in diesem Layout nicht.</translation>
    </message>
    <message>
        <source>Folders cannot be nested any deeper.</source>
        <translation>Ordner können nicht tiefer verschachtelt werden.</translation>
    </message>
    <message>
        <source>The tile is not a folder.</source>
        <translation>Die Kachel ist kein Ordner.</translation>
    </message>
    <message>
        <source>The tile is not an app.</source>
        <translation>Die Kachel ist keine App.</translation>
    </message>
    <message>
        <source>The tile is not an alias.</source>
        <translation>Die Kachel ist kein Alias.</translation>
    </message>
    <message>
        <source>The app is not hidden.</source>
        <translation>Die App ist nicht ausgeblendet.</translation>
    </message>
    <message>
        <source>The smart folder is already in this layout.</source>
        <translation>Der intelligente Ordner ist schon in diesem Layout.</translation>
    </message>
    <message>
        <source>The name is too long.</source>
        <translation>Der Name ist zu lang.</translation>
    </message>
    <message>
        <source>Tiles that were cut can only be pasted in the display mode that they were cut in.</source>
        <translation>Ausgeschnittene Kacheln können nur in dem Anzeigemodus eingesetzt werden, in dem sie ausgeschnitten wurden.</translation>
    </message>
    <message>
        <source>The tiles that were cut are no longer in this layout.</source>
        <translation>Die ausgeschnittenen Kacheln sind nicht mehr in diesem Layout.</translation>
    </message>
    <message>
        <source>There are no tiles to paste.</source>
        <translation>Es gibt keine Kacheln zum Einsetzen.</translation>
    </message>
    <message>
        <source>Undo %1</source>
        <translation>Widerrufen: %1</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>Wiederholen: %1</translation>
    </message>
    <message>
        <source>The Trash did not answer.</source>
        <translation>Der Papierkorb hat nicht geantwortet.</translation>
    </message>
    <message>
        <source>Could not put apps back</source>
        <translation>Apps konnten nicht zurückgelegt werden</translation>
    </message>
    <message>
        <source>Could not delete apps again</source>
        <translation>Apps konnten nicht erneut gelöscht werden</translation>
    </message>
    <message>
        <source>Smart Folder</source>
        <translation>Intelligenter Ordner</translation>
    </message>
    <message>
        <source>Only .icns files can be used as custom app icons.</source>
        <translation>Nur .icns-Dateien können als eigene App-Symbole verwendet werden.</translation>
    </message>
    <message>
        <source>The selected .icns file could not be read.</source>
        <translation>Die ausgewählte .icns-Datei konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The selected file is not a valid .icns icon.</source>
        <translation>Die ausgewählte Datei ist kein gültiges .icns-Symbol.</translation>
    </message>
    <message>
        <source>The selected .icns file is too large.</source>
        <translation>Die ausgewählte .icns-Datei ist zu groß.</translation>
    </message>
    <message>
        <source>Tessellar could not save the custom icon.</source>
        <translation>Tessellar konnte das eigene Symbol nicht sichern.</translation>
    </message>
    <message>
        <source>Tessellar could not remove the custom icon.</source>
        <translation>Tessellar konnte das eigene Symbol nicht entfernen.</translation>
    </message>
    <message>
        <source>This Page</source>
        <translation>Diese Seite</translation>
    </message>
    <message>
        <source>Page %1</source>
        <translation>Seite %1</translation>
    </message>
    <message>
        <source>New Page</source>
        <translation>Neue Seite</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Not signed</source>
        <translation>Nicht signiert</translation>
    </message>
    <message>
        <source>Signed by nobody (ad hoc)</source>
        <translation>Von niemandem signiert (ad hoc)</translation>
    </message>
    <message>
        <source>Another certificate</source>
        <translation>Ein anderes Zertifikat</translation>
    </message>
    <message>
        <source>Not needed</source>
        <translation>Nicht nötig</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Calls Itself</source>
        <translation>Eigener Name</translation>
    </message>
    <message>
        <source>Installed</source>
        <translation>Installiert</translation>
    </message>
    <message>
        <source>Not found where it was</source>
        <translation>Nicht gefunden, wo es war</translation>
    </message>
    <message>
        <source>Shown</source>
        <translation>Angezeigt</translation>
    </message>
    <message>
        <source>Hidden from the pages</source>
        <translation>Auf den Seiten ausgeblendet</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Build</source>
        <translation>Build</translation>
    </message>
    <message>
        <source>Bundle Identifier</source>
        <translation>Bundle-Kennung</translation>
    </message>
    <message>
        <source>Category</source>
        <translation>Kategorie</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Where</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Another Copy</source>
        <translation>Weitere Kopie</translation>
    </message>
    <message>
        <source>Installed From</source>
        <translation>Installiert aus</translation>
    </message>
    <message>
        <source>It comes with macOS</source>
        <translation>Gehört zu macOS</translation>
    </message>
    <message>
        <source>Developer</source>
        <translation>Entwickler</translation>
    </message>
    <message>
        <source>Publisher</source>
        <translation>Herausgeber</translation>
    </message>
    <message>
        <source>Built For</source>
        <translation>Gebaut für</translation>
    </message>
    <message>
        <source>Architectures</source>
        <translation>Architekturen</translation>
    </message>
    <message>
        <source>Minimum macOS</source>
        <translation>Mindestens macOS</translation>
    </message>
    <message>
        <source>Signature</source>
        <translation>Signatur</translation>
    </message>
    <message>
        <source>Team</source>
        <translation>Team</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Hardened Runtime</source>
        <translation>Gehärtete Laufzeit</translation>
    </message>
    <message>
        <source>Notarized</source>
        <translation>Notarisiert</translation>
    </message>
    <message>
        <source>Sandboxed</source>
        <translation>Sandbox</translation>
    </message>
    <message>
        <source>May Ask For</source>
        <translation>Darf fragen nach</translation>
    </message>
    <message>
        <source>Nothing that it declares</source>
        <translation>Nichts, was es angibt</translation>
    </message>
    <message>
        <source>Come From</source>
        <translation>Kommen von</translation>
    </message>
    <message>
        <source>Evidence</source>
        <translation>Beleg</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Stand</translation>
    </message>
    <message>
        <source>Last Checked</source>
        <translation>Zuletzt geprüft</translation>
    </message>
    <message>
        <source>Added</source>
        <translation>Hinzugefügt</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>First Seen</source>
        <translation>Zuerst gesehen</translation>
    </message>
    <message>
        <source>Last Used</source>
        <translation>Zuletzt benutzt</translation>
    </message>
    <message>
        <source>Opened</source>
        <translation>Geöffnet</translation>
    </message>
    <message>
        <source>Smart Folders</source>
        <translation>Intelligente Ordner</translation>
    </message>
    <message>
        <source>None shows it</source>
        <translation>Keiner zeigt es</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>Nie</translation>
    </message>
    <message>
        <source>Not checked yet</source>
        <translation>Noch nicht geprüft</translation>
    </message>
    <message>
        <source>At least %1</source>
        <translation>Mindestens %1</translation>
    </message>
    <message>
        <source>Nowhere that is known</source>
        <translation>Nirgends, wo es bekannt wäre</translation>
    </message>
    <message>
        <source>Once from here</source>
        <translation>Einmal von hier</translation>
    </message>
    <message>
        <source>%1 times from here</source>
        <translation>%1-mal von hier</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Origin</source>
        <translation>Herkunft</translation>
    </message>
    <message>
        <source>Security</source>
        <translation>Sicherheit</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Updates</translation>
    </message>
    <message>
        <source>Use</source>
        <translation>Nutzung</translation>
    </message>
    <message>
        <source>Could not save arrangement</source>
        <translation>Die Anordnung konnte nicht gesichert werden</translation>
    </message>
    <message>
        <source>Name this arrangement so it can be restored later.</source>
        <translation>Geben Sie dieser Anordnung einen Namen, damit sie später wiederhergestellt werden kann.</translation>
    </message>
    <message>
        <source>This arrangement was saved by another version of Tessellar and cannot be restored.</source>
        <translation>Diese Anordnung wurde von einer anderen Version von Tessellar gesichert und kann nicht wiederhergestellt werden.</translation>
    </message>
    <message>
        <source>The arrangement was changed meanwhile, and is left as it is.</source>
        <translation>Die Anordnung wurde inzwischen geändert und bleibt, wie sie ist.</translation>
    </message>
    <message>
        <source>Save “%1”</source>
        <translation>„%1“ sichern</translation>
    </message>
    <message>
        <source>Could not replace arrangement</source>
        <translation>Die Anordnung konnte nicht ersetzt werden</translation>
    </message>
    <message>
        <source>Replace “%1”</source>
        <translation>„%1“ ersetzen</translation>
    </message>
    <message>
        <source>Could not rename arrangement</source>
        <translation>Die Anordnung konnte nicht umbenannt werden</translation>
    </message>
    <message>
        <source>Rename to “%1”</source>
        <translation>In „%1“ umbenennen</translation>
    </message>
    <message>
        <source>Could not delete arrangement</source>
        <translation>Die Anordnung konnte nicht gelöscht werden</translation>
    </message>
    <message>
        <source>Delete “%1”</source>
        <translation>„%1“ löschen</translation>
    </message>
    <message>
        <source>Could not export arrangement</source>
        <translation>Die Anordnung konnte nicht exportiert werden</translation>
    </message>
    <message>
        <source>Could not import arrangement</source>
        <translation>Die Anordnung konnte nicht importiert werden</translation>
    </message>
    <message>
        <source>Import “%1”</source>
        <translation>„%1“ importieren</translation>
    </message>
    <message>
        <source>Could not undo</source>
        <translation>Widerrufen nicht möglich</translation>
    </message>
    <message>
        <source>Could not redo</source>
        <translation>Wiederholen nicht möglich</translation>
    </message>
    <message>
        <source>There is nothing to undo.</source>
        <translation>Es gibt nichts zu widerrufen.</translation>
    </message>
    <message>
        <source>There is nothing to redo.</source>
        <translation>Es gibt nichts zu wiederholen.</translation>
    </message>
    <message>
        <source>Restores the default alphabetical layout and removes all folders, custom ordering, and hidden apps.</source>
        <translation>Stellt das übliche alphabetische Layout wieder her und entfernt alle Ordner, die eigene Reihenfolge und ausgeblendete Apps.</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Read the Preserved File Again</source>
        <translation>Aufbewahrte Datei erneut lesen</translation>
    </message>
    <message>
        <source>Begin without Smart Folders…</source>
        <translation>Ohne intelligente Ordner beginnen …</translation>
    </message>
    <message>
        <source>Begin without Smart Folders?</source>
        <translation>Ohne intelligente Ordner beginnen?</translation>
    </message>
    <message>
        <source> It stays where it was put. New Smart Folders can be made again; tiles of the old ones remain until they are removed.</source>
        <translation> Sie bleibt, wo sie hingelegt wurde. Neue intelligente Ordner können wieder angelegt werden; Kacheln der alten bleiben, bis sie entfernt werden.</translation>
    </message>
    <message>
        <source>Begin Anew</source>
        <translation>Neu beginnen</translation>
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
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
    <message>
        <source>Smart Folders are unavailable</source>
        <translation>Intelligente Ordner sind nicht verfügbar</translation>
    </message>
    <message>
        <source>New Smart Folder…</source>
        <translation>Neuer intelligenter Ordner …</translation>
    </message>
    <message>
        <source>New Smart Folder from Template</source>
        <translation>Neuer intelligenter Ordner aus Vorlage</translation>
    </message>
    <message>
        <source>Existing Smart Folder</source>
        <translation>Vorhandener intelligenter Ordner</translation>
    </message>
    <message>
        <source>Unhide</source>
        <translation>Einblenden</translation>
    </message>
    <message>
        <source>Hidden and Remembered…</source>
        <translation>Ausgeblendet und gemerkt …</translation>
    </message>
    <message>
        <source>Sort Page by Name</source>
        <translation>Seite nach Namen sortieren</translation>
    </message>
    <message>
        <source>Sort All Pages by Name</source>
        <translation>Alle Seiten nach Namen sortieren</translation>
    </message>
    <message>
        <source>Past Removals…</source>
        <translation>Entfernte Programme …</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Keyboard Shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Show in a Window</source>
        <translation>In einem Fenster zeigen</translation>
    </message>
    <message>
        <source>Show in Full Screen</source>
        <translation>Bildschirmfüllend zeigen</translation>
    </message>
    <message>
        <source>Import Old Launchpad…</source>
        <translation>Altes Launchpad importieren …</translation>
    </message>
    <message>
        <source>Saved Arrangements…</source>
        <translation>Gesicherte Anordnungen …</translation>
    </message>
    <message>
        <source>Backups…</source>
        <translation>Sicherungen …</translation>
    </message>
    <message>
        <source>Reset Layout…</source>
        <translation>Layout zurücksetzen …</translation>
    </message>
    <message>
        <source>No installed application is known by “%1”.</source>
        <translation>Unter „%1“ ist kein installiertes Programm bekannt.</translation>
    </message>
    <message>
        <source>“%1” belongs to macOS and cannot be removed.</source>
        <translation>„%1“ gehört zu macOS und kann nicht entfernt werden.</translation>
    </message>
    <message>
        <source>“%1” is a part of another application and goes with it.</source>
        <translation>„%1“ ist Teil eines anderen Programms und geht mit ihm.</translation>
    </message>
    <message>
        <source>Tessellar cannot remove itself.</source>
        <translation>Tessellar kann sich nicht selbst entfernen.</translation>
    </message>
    <message>
        <source>A removal is still in progress.</source>
        <translation>Ein Entfernen ist noch im Gange.</translation>
    </message>
    <message>
        <source>Nothing is selected for removal.</source>
        <translation>Es ist nichts zum Entfernen ausgewählt.</translation>
    </message>
    <message>
        <source>“%1” is open</source>
        <translation>„%1“ ist geöffnet</translation>
    </message>
    <message>
        <source>It will be asked to quit before it is moved to the Trash.</source>
        <translation>Es wird gebeten, sich zu beenden, bevor es in den Papierkorb gelegt wird.</translation>
    </message>
    <message>
        <source>Quit and Remove</source>
        <translation>Beenden und entfernen</translation>
    </message>
    <message>
        <source>Nothing was moved to the Trash.</source>
        <translation>Es wurde nichts in den Papierkorb gelegt.</translation>
    </message>
    <message>
        <source>Could not put everything back</source>
        <translation>Nicht alles konnte zurückgelegt werden</translation>
    </message>
    <message>
        <source>There is no removal to bring back.</source>
        <translation>Es gibt nichts Entferntes zurückzuholen.</translation>
    </message>
    <message>
        <source>Could not delete everything again</source>
        <translation>Nicht alles konnte erneut gelöscht werden</translation>
    </message>
    <message>
        <source>There is no such Smart Folder.</source>
        <translation>Diesen intelligenten Ordner gibt es nicht.</translation>
    </message>
    <message>
        <source>Could not save the layout</source>
        <translation>Das Layout konnte nicht gesichert werden</translation>
    </message>
    <message>
        <source>There is no Trash here.</source>
        <translation>Hier gibt es keinen Papierkorb.</translation>
    </message>
    <message>
        <source>An undo or redo is still in progress.</source>
        <translation>Ein Widerrufen oder Wiederholen ist noch im Gange.</translation>
    </message>
    <message>
        <source>“%1” in the other display mode must be undone or redone first: it changed the same tiles or Smart Folder.</source>
        <translation>„%1“ im anderen Anzeigemodus muss zuerst widerrufen oder wiederholt werden: Es hat dieselben Kacheln oder denselben intelligenten Ordner geändert.</translation>
    </message>
    <message>
        <source>An application could not be moved.</source>
        <translation>Ein Programm konnte nicht bewegt werden.</translation>
    </message>
    <message>
        <source>The arrangement could not be saved.</source>
        <translation>Die Anordnung konnte nicht gesichert werden.</translation>
    </message>
    <message>
        <source>Could not remove the custom icon</source>
        <translation>Das eigene Symbol konnte nicht entfernt werden</translation>
    </message>
    <message>
        <source>Could not change the icon</source>
        <translation>Das Symbol konnte nicht geändert werden</translation>
    </message>
    <message>
        <source>An import is already in progress.</source>
        <translation>Ein Import ist schon im Gange.</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importieren</translation>
    </message>
    <message>
        <source>Waiting for the updates before it…</source>
        <translation>Warten auf die Updates davor …</translation>
    </message>
    <message>
        <source>Waiting…</source>
        <translation>Warten …</translation>
    </message>
    <message>
        <source>There is no update to skip.</source>
        <translation>Es gibt kein Update zum Überspringen.</translation>
    </message>
    <message>
        <source>The update continues by itself.</source>
        <translation>Das Update läuft von selbst weiter.</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Could not update “%1”</source>
        <translation>„%1“ konnte nicht aktualisiert werden</translation>
    </message>
    <message>
        <source>Could not update some apps</source>
        <translation>Einige Apps konnten nicht aktualisiert werden</translation>
    </message>
    <message>
        <source>The arrangement that is shown here took its place. The other version is kept as “%1”.</source>
        <translation>Die hier gezeigte Anordnung ist an ihre Stelle getreten. Die andere Fassung wird als „%1“ aufgehoben.</translation>
    </message>
    <message>
        <source>Another program changed the layout</source>
        <translation>Ein anderes Programm hat das Layout geändert</translation>
    </message>
    <message>
        <source>The defaults are used meanwhile. Applications in search folders of your own keep their places. The first change starts a new file; the old one is kept beside it.</source>
        <translation>Solange gelten die üblichen. Programme in eigenen Suchordnern behalten ihre Plätze. Die erste Änderung beginnt eine neue Datei, und die alte wird daneben aufgehoben.</translation>
    </message>
    <message>
        <source>The settings could not be read</source>
        <translation>Die Einstellungen konnten nicht gelesen werden</translation>
    </message>
    <message>
        <source>Could not open “%1”</source>
        <translation>„%1“ konnte nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Could not restore arrangement</source>
        <translation>Die Anordnung konnte nicht wiederhergestellt werden</translation>
    </message>
    <message>
        <source>The contents of a folder could not be read, and its applications come at the end. What was restored is kept as it is, and “Undo” brings the former layout back.</source>
        <translation>Der Inhalt eines Ordners konnte nicht gelesen werden; seine Programme kommen ans Ende. Was wiederhergestellt wurde, wird unverändert aufgehoben, und „Widerrufen“ holt das vorige Layout zurück.</translation>
    </message>
    <message>
        <source>Part of what was restored could not be read</source>
        <translation>Ein Teil des Wiederhergestellten konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>Could not restore backup</source>
        <translation>Die Sicherung konnte nicht wiederhergestellt werden</translation>
    </message>
    <message>
        <source>Could not reset layout</source>
        <translation>Das Layout konnte nicht zurückgesetzt werden</translation>
    </message>
    <message>
        <source>Reset the Launchpad layout?</source>
        <translation>Launchpad-Layout zurücksetzen?</translation>
    </message>
    <message>
        <source>Until they can be, applications that are gone keep their tiles.</source>
        <translation>Bis sie gelesen werden können, behalten verschwundene Programme ihre Kacheln.</translation>
    </message>
    <message>
        <source>The remembered places of applications could not be read</source>
        <translation>Die Plätze verschwundener Programme konnten nicht gelesen werden</translation>
    </message>
    <message>
        <source>The contents of a folder could not be read, and its applications come at the end. The layout as it was is kept as “%1”.</source>
        <translation>Der Inhalt eines Ordners konnte nicht gelesen werden; seine Programme kommen ans Ende. Das Layout, wie es war, wird als „%1“ aufgehoben.</translation>
    </message>
    <message>
        <source>Part of the layout could not be read</source>
        <translation>Ein Teil des Layouts konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>There are more application folders than this Mac can watch. New applications may take some seconds to appear.</source>
        <translation>Es gibt mehr Programmordner, als dieser Mac beobachten kann. Neue Programme erscheinen vielleicht erst nach einigen Sekunden.</translation>
    </message>
    <message>
        <source>This app is not currently available. Tessellar will remove it from the layout when the installed-app list refreshes.</source>
        <translation>Diese App ist zurzeit nicht verfügbar. Tessellar entfernt sie aus dem Layout, wenn die Liste der installierten Apps aufgefrischt wird.</translation>
    </message>
    <message>
        <source>Its location is not known.</source>
        <translation>Es ist nicht bekannt, wo es liegt.</translation>
    </message>
    <message>
        <source>%1: put back.</source>
        <translation>%1: zurückgelegt.</translation>
    </message>
    <message>
        <source>Rows of tiles on a page</source>
        <translation>Zeilen mit Kacheln auf einer Seite</translation>
    </message>
    <message>
        <source>Columns of tiles on a page</source>
        <translation>Spalten mit Kacheln auf einer Seite</translation>
    </message>
    <message>
        <source>Size of the icons, of what their cells hold</source>
        <translation>Größe der Symbole, gemessen an ihren Zellen</translation>
    </message>
    <message>
        <source>Size of the icons in a window, in points</source>
        <translation>Größe der Symbole in einem Fenster, in Punkt</translation>
    </message>
    <message>
        <source>Space between columns in a window, in points</source>
        <translation>Abstand der Spalten in einem Fenster, in Punkt</translation>
    </message>
    <message>
        <source>Space between rows in a window, in points</source>
        <translation>Abstand der Zeilen in einem Fenster, in Punkt</translation>
    </message>
    <message>
        <source>Size of the names; as it fits the icons, where it is not set</source>
        <translation>Größe der Namen; ohne Angabe passend zu den Symbolen</translation>
    </message>
    <message>
        <source>Rows of tiles in a folder</source>
        <translation>Zeilen mit Kacheln in einem Ordner</translation>
    </message>
    <message>
        <source>Columns of tiles in a folder</source>
        <translation>Spalten mit Kacheln in einem Ordner</translation>
    </message>
    <message>
        <source>Size of the icons in a folder, of those of the grid</source>
        <translation>Größe der Symbole in einem Ordner, gemessen an denen des Rasters</translation>
    </message>
    <message>
        <source>Space between the icons in a folder, in points</source>
        <translation>Abstand der Symbole in einem Ordner, in Punkt</translation>
    </message>
    <message>
        <source>Width of the window, in points</source>
        <translation>Breite des Fensters, in Punkt</translation>
    </message>
    <message>
        <source>Height of the window, in points</source>
        <translation>Höhe des Fensters, in Punkt</translation>
    </message>
    <message>
        <source>Whether sheets, menus and alerts are light or dark</source>
        <translation>Ob Dialoge, Menüs und Hinweise hell oder dunkel sind</translation>
    </message>
    <message>
        <source>As the system</source>
        <translation>Wie das System</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>The language of menus, sheets and messages</source>
        <translation>Die Sprache von Menüs, Dialogen und Meldungen</translation>
    </message>
    <message>
        <source>Tiles and pages jump to their places instead of sliding</source>
        <translation>Kacheln und Seiten springen an ihren Platz, statt zu gleiten</translation>
    </message>
    <message>
        <source>The display mode that the launcher opens in</source>
        <translation>Der Anzeigemodus, in dem der Launcher sich öffnet</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Bildschirmfüllend</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fenster</translation>
    </message>
    <message>
        <source>Where the window lies, in points from the left</source>
        <translation>Wo das Fenster liegt, in Punkt von links</translation>
    </message>
    <message>
        <source>Where the window lies, in points from the top</source>
        <translation>Wo das Fenster liegt, in Punkt von oben</translation>
    </message>
    <message>
        <source>The keys that show the launcher from anywhere, such as option+space</source>
        <translation>Die Tasten, die den Launcher von überall zeigen, etwa option+space</translation>
    </message>
    <message>
        <source>The corner of the screen that shows the launcher when the pointer is pushed into it</source>
        <translation>Die Ecke des Bildschirms, die den Launcher zeigt, wenn der Zeiger hineingeschoben wird</translation>
    </message>
    <message>
        <source>Top left</source>
        <translation>Oben links</translation>
    </message>
    <message>
        <source>Top right</source>
        <translation>Oben rechts</translation>
    </message>
    <message>
        <source>Bottom left</source>
        <translation>Unten links</translation>
    </message>
    <message>
        <source>Bottom right</source>
        <translation>Unten rechts</translation>
    </message>
    <message>
        <source>The folders in which to look for applications, instead of the usual ones</source>
        <translation>Die Ordner, in denen statt in den üblichen nach Programmen gesucht wird</translation>
    </message>
    <message>
        <source>Additional folders in which to look for applications</source>
        <translation>Ordner, in denen außerdem nach Programmen gesucht wird</translation>
    </message>
    <message>
        <source>How many folders deep to look for applications</source>
        <translation>Wie viele Ordner tief nach Programmen gesucht wird</translation>
    </message>
    <message>
        <source>Whether applications are checked for newer versions</source>
        <translation>Ob nach neueren Versionen der Programme gesucht wird</translation>
    </message>
    <message>
        <source>How often they are checked, in seconds</source>
        <translation>Wie oft danach gesucht wird, in Sekunden</translation>
    </message>
    <message>
        <source>Every six hours</source>
        <translation>Alle sechs Stunden</translation>
    </message>
    <message>
        <source>Every day</source>
        <translation>Jeden Tag</translation>
    </message>
    <message>
        <source>Every three days</source>
        <translation>Alle drei Tage</translation>
    </message>
    <message>
        <source>Every week</source>
        <translation>Jede Woche</translation>
    </message>
    <message>
        <source>The address for looking up versions, instead of the store&apos;s own</source>
        <translation>Wo statt unter der eigenen Adresse des Stores nach Versionen gefragt wird</translation>
    </message>
    <message>
        <source>The address of the store&apos;s pages, instead of its own</source>
        <translation>Wo statt unter der eigenen Adresse die Seiten des Stores liegen</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>true or false</source>
        <translation>true oder false</translation>
    </message>
    <message>
        <source> or </source>
        <translation> oder </translation>
    </message>
    <message>
        <source>a list of folders</source>
        <translation>eine Liste von Ordnern</translation>
    </message>
    <message>
        <source>a text</source>
        <translation>ein Text</translation>
    </message>
    <message>
        <source>“%1” must be %2.</source>
        <translation>„%1“ muss sein: %2.</translation>
    </message>
    <message>
        <source>There is no setting “%1”.</source>
        <translation>Es gibt keine Einstellung „%1“.</translation>
    </message>
    <message>
        <source>Could not save setting</source>
        <translation>Die Einstellung konnte nicht gesichert werden</translation>
    </message>
    <message>
        <source>“%1” was changed elsewhere while you edited it. Saving again replaces that change.</source>
        <translation>„%1“ wurde anderswo geändert, während Sie es bearbeitet haben. Erneutes Sichern ersetzt diese Änderung.</translation>
    </message>
    <message>
        <source>“%1” was deleted elsewhere while you edited it. Saving again re-creates it.</source>
        <translation>„%1“ wurde anderswo gelöscht, während Sie es bearbeitet haben. Erneutes Sichern legt es neu an.</translation>
    </message>
    <message>
        <source>Could not save Smart Folders</source>
        <translation>Die intelligenten Ordner konnten nicht gesichert werden</translation>
    </message>
    <message>
        <source>The Smart Folder registry could not be read. Its original file was preserved, so no rules can be changed until the registry is repaired.</source>
        <translation>Das Verzeichnis der intelligenten Ordner konnte nicht gelesen werden. Die ursprüngliche Datei wurde aufbewahrt; bis sie repariert ist, können keine Regeln geändert werden.</translation>
    </message>
    <message>
        <source>Unavailable Smart Folder</source>
        <translation>Nicht verfügbarer intelligenter Ordner</translation>
    </message>
    <message>
        <source>This Smart Folder’s definition is unavailable.</source>
        <translation>Die Definition dieses intelligenten Ordners ist nicht verfügbar.</translation>
    </message>
    <message>
        <source>Delete “%1”?</source>
        <translation>„%1“ löschen?</translation>
    </message>
    <message>
        <source>This deletes its shared rules and removes the Smart Folder from both launcher modes. The apps themselves are not changed.</source>
        <translation>Das löscht die gemeinsamen Regeln und entfernt den intelligenten Ordner aus beiden Anzeigemodi. Die Apps selbst werden nicht verändert.</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Cancel Update</source>
        <translation>Update abbrechen</translation>
    </message>
    <message>
        <source>Release Notes</source>
        <translation>Versionshinweise</translation>
    </message>
    <message>
        <source>Skip Version %1</source>
        <translation>Version %1 überspringen</translation>
    </message>
    <message>
        <source>Skip All Its Updates</source>
        <translation>Alle Updates dieser App überspringen</translation>
    </message>
    <message>
        <source>Offer Its Updates Again</source>
        <translation>Updates dieser App wieder anbieten</translation>
    </message>
    <message>
        <source>Show Where It Is</source>
        <translation>Kachel zeigen</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Informationen</translation>
    </message>
    <message>
        <source>Reveal</source>
        <translation>Im Ordner zeigen</translation>
    </message>
    <message>
        <source>Rename…</source>
        <translation>Umbenennen …</translation>
    </message>
    <message>
        <source>Edit Smart Folder…</source>
        <translation>Intelligenten Ordner bearbeiten …</translation>
    </message>
    <message>
        <source>Revert Name</source>
        <translation>Namen zurücksetzen</translation>
    </message>
    <message>
        <source>Change Icon…</source>
        <translation>Symbol ändern …</translation>
    </message>
    <message>
        <source>Remove Custom Icon</source>
        <translation>Eigenes Symbol entfernen</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Ausschneiden</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einsetzen</translation>
    </message>
    <message>
        <source>Move to</source>
        <translation>Bewegen nach</translation>
    </message>
    <message>
        <source>Create Alias in…</source>
        <translation>Alias erstellen in …</translation>
    </message>
    <message>
        <source>Remove alias to %1</source>
        <translation>Alias von %1 entfernen</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Gruppieren</translation>
    </message>
    <message>
        <source>Ungroup</source>
        <translation>Gruppierung auflösen</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>Remove from This Page</source>
        <translation>Von dieser Seite entfernen</translation>
    </message>
    <message>
        <source>Delete…</source>
        <translation>Löschen …</translation>
    </message>
    <message>
        <source>Move to Trash…</source>
        <translation>In den Papierkorb legen …</translation>
    </message>
    <message>
        <source>Not installed</source>
        <translation>Nicht installiert</translation>
    </message>
    <message>
        <source>%1 · removed %2</source>
        <translation>%1 · entfernt am %2</translation>
    </message>
    <message>
        <source>%1 · not seen since %2</source>
        <translation>%1 · nicht gesehen seit %2</translation>
    </message>
    <message>
        <source>Business</source>
        <translation>Wirtschaft</translation>
    </message>
    <message>
        <source>Education</source>
        <translation>Bildung</translation>
    </message>
    <message>
        <source>Entertainment</source>
        <translation>Unterhaltung</translation>
    </message>
    <message>
        <source>Finance</source>
        <translation>Finanzen</translation>
    </message>
    <message>
        <source>Games</source>
        <translation>Spiele</translation>
    </message>
    <message>
        <source>Design</source>
        <translation>Design</translation>
    </message>
    <message>
        <source>Health &amp; Fitness</source>
        <translation>Gesundheit &amp; Fitness</translation>
    </message>
    <message>
        <source>Lifestyle</source>
        <translation>Lifestyle</translation>
    </message>
    <message>
        <source>Medical</source>
        <translation>Medizin</translation>
    </message>
    <message>
        <source>Music</source>
        <translation>Musik</translation>
    </message>
    <message>
        <source>News</source>
        <translation>Nachrichten</translation>
    </message>
    <message>
        <source>Photography</source>
        <translation>Fotografie</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>Produktivität</translation>
    </message>
    <message>
        <source>Reference</source>
        <translation>Nachschlagewerke</translation>
    </message>
    <message>
        <source>Social</source>
        <translation>Soziales</translation>
    </message>
    <message>
        <source>Sports</source>
        <translation>Sport</translation>
    </message>
    <message>
        <source>Travel</source>
        <translation>Reisen</translation>
    </message>
    <message>
        <source>Utilities</source>
        <translation>Dienstprogramme</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>Video</translation>
    </message>
    <message>
        <source>Weather</source>
        <translation>Wetter</translation>
    </message>
    <message>
        <source>“%1” is from a later version of Tessellar.</source>
        <translation>„%1“ stammt von einer späteren Version von Tessellar.</translation>
    </message>
    <message>
        <source>Version %1 is not supported.</source>
        <translation>Version %1 wird nicht unterstützt.</translation>
    </message>
    <message>
        <source> It is kept as %1.</source>
        <translation> Sie wird als %1 aufgehoben.</translation>
    </message>
    <message>
        <source> It could not be set aside and stays: </source>
        <translation> Sie konnte nicht beiseitegelegt werden und bleibt: </translation>
    </message>
    <message>
        <source>version %1 is not supported</source>
        <translation>Version %1 wird nicht unterstützt</translation>
    </message>
    <message>
        <source>The launcher layout is still loading. Try again in a moment.</source>
        <translation>Das Layout des Launchers wird noch geladen. Versuchen Sie es gleich noch einmal.</translation>
    </message>
    <message>
        <source>The current layout file could not be read. Reset the layout before saving changes.</source>
        <translation>Die Datei des jetzigen Layouts konnte nicht gelesen werden. Setzen Sie das Layout zurück, bevor Sie Änderungen sichern.</translation>
    </message>
    <message>
        <source>folders are nested more than %1 deep</source>
        <translation>Ordner sind mehr als %1 tief verschachtelt</translation>
    </message>
    <message>
        <source>Could not verify Tessellar’s code signature.</source>
        <translation>Die Codesignatur von Tessellar konnte nicht bestätigt werden.</translation>
    </message>
    <message>
        <source>“%1” could not be removed.</source>
        <translation>„%1“ konnte nicht entfernt werden.</translation>
    </message>
    <message>
        <source>“%1” could not be written.</source>
        <translation>„%1“ konnte nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>“%1” does not exist.</source>
        <translation>„%1“ existiert nicht.</translation>
    </message>
    <message>
        <source>You do not have permission to use “%1”.</source>
        <translation>Sie haben keine Berechtigung für „%1“.</translation>
    </message>
    <message>
        <source>“%1” is not a folder.</source>
        <translation>„%1“ ist kein Ordner.</translation>
    </message>
    <message>
        <source>“%1” is a folder.</source>
        <translation>„%1“ ist ein Ordner.</translation>
    </message>
    <message>
        <source>“%1” is not a regular file.</source>
        <translation>„%1“ ist keine gewöhnliche Datei.</translation>
    </message>
    <message>
        <source>“%1” is too large.</source>
        <translation>„%1“ ist zu groß.</translation>
    </message>
    <message>
        <source>There is not enough space on the disk for “%1”.</source>
        <translation>Für „%1“ ist nicht genug Platz auf dem Volume.</translation>
    </message>
    <message>
        <source>“%1” is on a volume that cannot be written to.</source>
        <translation>„%1“ liegt auf einem schreibgeschützten Volume.</translation>
    </message>
    <message>
        <source>“%1” already exists.</source>
        <translation>„%1“ gibt es schon.</translation>
    </message>
    <message>
        <source>The folder “%1” is not empty.</source>
        <translation>Der Ordner „%1“ ist nicht leer.</translation>
    </message>
    <message>
        <source>“%1” is on another volume.</source>
        <translation>„%1“ liegt auf einem anderen Volume.</translation>
    </message>
    <message>
        <source>“%1” leads through too many links.</source>
        <translation>„%1“ führt über zu viele Verweise.</translation>
    </message>
    <message>
        <source>“%1” is not a usable path.</source>
        <translation>„%1“ ist kein brauchbarer Pfad.</translation>
    </message>
    <message>
        <source>“%1” is damaged.</source>
        <translation>„%1“ ist beschädigt.</translation>
    </message>
    <message>
        <source>“%1” could not be read or written.</source>
        <translation>„%1“ konnte nicht gelesen oder geschrieben werden.</translation>
    </message>
    <message>
        <source>There is no home in the folder “Users” of %1; name one with --home.</source>
        <translation>Im Ordner „Users“ von %1 gibt es kein Benutzerverzeichnis; nennen Sie eines mit --home.</translation>
    </message>
    <message>
        <source>There are several homes in %1 (%2); name one with --home.</source>
        <translation>In %1 gibt es mehrere Benutzerverzeichnisse (%2); nennen Sie eines mit --home.</translation>
    </message>
    <message>
        <source>HOME is not set; name the home with --home.</source>
        <translation>HOME ist nicht gesetzt; nennen Sie das Benutzerverzeichnis mit --home.</translation>
    </message>
    <message>
        <source>The home %1 is not a folder.</source>
        <translation>Das Benutzerverzeichnis %1 ist kein Ordner.</translation>
    </message>
    <message>
        <source>The root %1 is not a folder.</source>
        <translation>Die Wurzel %1 ist kein Ordner.</translation>
    </message>
    <message>
        <source>The address is not secure.</source>
        <translation>Die Adresse ist nicht sicher.</translation>
    </message>
    <message>
        <source>The server redirects to another address.</source>
        <translation>Der Server führt zu einer anderen Adresse.</translation>
    </message>
    <message>
        <source>The server did not answer in time.</source>
        <translation>Der Server hat nicht rechtzeitig geantwortet.</translation>
    </message>
    <message>
        <source>The server&apos;s answer is too large.</source>
        <translation>Die Antwort des Servers ist zu groß.</translation>
    </message>
    <message>
        <source>The server could not be reached.</source>
        <translation>Der Server war nicht zu erreichen.</translation>
    </message>
    <message>
        <source>The system did not open it.</source>
        <translation>Das System hat es nicht geöffnet.</translation>
    </message>
    <message>
        <source>The file is not a property list.</source>
        <translation>Die Datei ist keine Property-Liste.</translation>
    </message>
    <message>
        <source>The property list is damaged.</source>
        <translation>Die Property-Liste ist beschädigt.</translation>
    </message>
    <message>
        <source>The property list is too large.</source>
        <translation>Die Property-Liste ist zu groß.</translation>
    </message>
    <message>
        <source>The property list is nested too deeply.</source>
        <translation>Die Property-Liste ist zu tief verschachtelt.</translation>
    </message>
    <message>
        <source>The property list holds too many values.</source>
        <translation>Die Property-Liste enthält zu viele Werte.</translation>
    </message>
    <message>
        <source>The administrator request is missing authorization.</source>
        <translation>In der Anfrage an den Administrator fehlt die Berechtigung.</translation>
    </message>
    <message>
        <source>The administrator request contains malformed authorization.</source>
        <translation>Die Anfrage an den Administrator enthält eine fehlerhafte Berechtigung.</translation>
    </message>
    <message>
        <source>The administrator authorization is no longer valid.</source>
        <translation>Die Berechtigung des Administrators gilt nicht mehr.</translation>
    </message>
    <message>
        <source>Administrator authorization was not granted.</source>
        <translation>Die Berechtigung des Administrators wurde nicht erteilt.</translation>
    </message>
    <message>
        <source>Could not prepare administrator authorization.</source>
        <translation>Die Berechtigung des Administrators konnte nicht vorbereitet werden.</translation>
    </message>
    <message>
        <source>Administrator approval was canceled.</source>
        <translation>Die Zustimmung des Administrators wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Installed This Week</source>
        <translation>Diese Woche installiert</translation>
    </message>
    <message>
        <source>Microsoft Apps</source>
        <translation>Microsoft-Apps</translation>
    </message>
    <message>
        <source>Recently Used</source>
        <translation>Kürzlich benutzt</translation>
    </message>
    <message>
        <source>Updates Available</source>
        <translation>Updates verfügbar</translation>
    </message>
    <message>
        <source>Mac App Store Apps</source>
        <translation>Apps aus dem Mac App Store</translation>
    </message>
    <message>
        <source>Complete every rule.</source>
        <translation>Vervollständigen Sie jede Regel.</translation>
    </message>
    <message>
        <source>Enter a name.</source>
        <translation>Geben Sie einen Namen ein.</translation>
    </message>
    <message>
        <source>Add at least one rule.</source>
        <translation>Fügen Sie mindestens eine Regel hinzu.</translation>
    </message>
    <message>
        <source>Choose a limit from 1 to 500.</source>
        <translation>Wählen Sie eine Obergrenze von 1 bis 500.</translation>
    </message>
    <message>
        <source>Still gathering…</source>
        <translation>Angaben werden noch gesammelt …</translation>
    </message>
    <message>
        <source>Some app details are unavailable, so those rules cannot be evaluated yet.</source>
        <translation>Einige Angaben zu den Apps fehlen, daher können diese Regeln noch nicht ausgewertet werden.</translation>
    </message>
    <message>
        <source>Unsupported Smart Folder registry version %1.</source>
        <translation>Die Version %1 des Verzeichnisses der intelligenten Ordner wird nicht unterstützt.</translation>
    </message>
    <message>
        <source>The Smart Folder registry contains an invalid definition.</source>
        <translation>Das Verzeichnis der intelligenten Ordner enthält eine ungültige Definition.</translation>
    </message>
    <message>
        <source>The Smart Folder registry contains a duplicate definition identifier.</source>
        <translation>Das Verzeichnis der intelligenten Ordner enthält die Kennung einer Definition doppelt.</translation>
    </message>
    <message>
        <source>The Smart Folder registry contains a duplicate rule identifier.</source>
        <translation>Das Verzeichnis der intelligenten Ordner enthält die Kennung einer Regel doppelt.</translation>
    </message>
    <message>
        <source>Smart Folders cannot be saved until the quarantined registry is recovered or replaced.</source>
        <translation>Intelligente Ordner können erst gesichert werden, wenn das beiseitegelegte Verzeichnis wiederhergestellt oder ersetzt ist.</translation>
    </message>
    <message>
        <source>A quarantined Smart Folder registry needs recovery.</source>
        <translation>Ein beiseitegelegtes Verzeichnis der intelligenten Ordner muss wiederhergestellt werden.</translation>
    </message>
    <message>
        <source>The Smart Folder registry is damaged: %1</source>
        <translation>Das Verzeichnis der intelligenten Ordner ist beschädigt: %1</translation>
    </message>
    <message>
        <source>Original Name</source>
        <translation>Ursprünglicher Name</translation>
    </message>
    <message>
        <source>Signing Team ID</source>
        <translation>Team-ID der Signatur</translation>
    </message>
    <message>
        <source>Path</source>
        <translation>Pfad</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Speicherort</translation>
    </message>
    <message>
        <source>Updates Come From</source>
        <translation>Updates kommen von</translation>
    </message>
    <message>
        <source>Platform</source>
        <translation>Plattform</translation>
    </message>
    <message>
        <source>Architecture</source>
        <translation>Architektur</translation>
    </message>
    <message>
        <source>Update Status</source>
        <translation>Update-Status</translation>
    </message>
    <message>
        <source>Permission</source>
        <translation>Berechtigung</translation>
    </message>
    <message>
        <source>Launch Count</source>
        <translation>Zahl der Starts</translation>
    </message>
    <message>
        <source>Minimum macOS Version</source>
        <translation>Mindestversion von macOS</translation>
    </message>
    <message>
        <source>Date Installed</source>
        <translation>Installationsdatum</translation>
    </message>
    <message>
        <source>Date First Seen</source>
        <translation>Zuerst gesehen am</translation>
    </message>
    <message>
        <source>Date Last Used</source>
        <translation>Zuletzt benutzt am</translation>
    </message>
    <message>
        <source>Protected</source>
        <translation>Geschützt</translation>
    </message>
    <message>
        <source>Removable</source>
        <translation>Entfernbar</translation>
    </message>
    <message>
        <source>Inside Another App</source>
        <translation>In einer anderen App</translation>
    </message>
    <message>
        <source>Never Used</source>
        <translation>Nie benutzt</translation>
    </message>
    <message>
        <source>Custom Name</source>
        <translation>Eigener Name</translation>
    </message>
    <message>
        <source>Custom Icon</source>
        <translation>Eigenes Symbol</translation>
    </message>
    <message>
        <source>Applications</source>
        <translation>Programme</translation>
    </message>
    <message>
        <source>User Applications</source>
        <translation>Programme des Benutzers</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Andere</translation>
    </message>
    <message>
        <source>System</source>
        <translation>System</translation>
    </message>
    <message>
        <source>Mac App Store</source>
        <translation>Mac App Store</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Von Hand</translation>
    </message>
    <message>
        <source>Homebrew</source>
        <translation>Homebrew</translation>
    </message>
    <message>
        <source>Sparkle</source>
        <translation>Sparkle</translation>
    </message>
    <message>
        <source>Vendor</source>
        <translation>Hersteller</translation>
    </message>
    <message>
        <source>Unsupported</source>
        <translation>Nicht unterstützt</translation>
    </message>
    <message>
        <source>Mac</source>
        <translation>Mac</translation>
    </message>
    <message>
        <source>iPhone or iPad</source>
        <translation>iPhone oder iPad</translation>
    </message>
    <message>
        <source>Apple silicon (arm64)</source>
        <translation>Apple-Chip (arm64)</translation>
    </message>
    <message>
        <source>Apple silicon (arm64e)</source>
        <translation>Apple-Chip (arm64e)</translation>
    </message>
    <message>
        <source>Intel 64-bit (x86_64)</source>
        <translation>Intel 64-Bit (x86_64)</translation>
    </message>
    <message>
        <source>Intel 32-bit (i386)</source>
        <translation>Intel 32-Bit (i386)</translation>
    </message>
    <message>
        <source>PowerPC (ppc)</source>
        <translation>PowerPC (ppc)</translation>
    </message>
    <message>
        <source>Up To Date</source>
        <translation>Auf dem neuesten Stand</translation>
    </message>
    <message>
        <source>Update Available</source>
        <translation>Update verfügbar</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Misslungen</translation>
    </message>
    <message>
        <source>Not Checked</source>
        <translation>Nicht geprüft</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Mikrofon</translation>
    </message>
    <message>
        <source>Location</source>
        <comment>where the user is</comment>
        <translation>Standort</translation>
    </message>
    <message>
        <source>Photos</source>
        <translation>Fotos</translation>
    </message>
    <message>
        <source>Contacts</source>
        <translation>Kontakte</translation>
    </message>
    <message>
        <source>Calendar</source>
        <translation>Kalender</translation>
    </message>
    <message>
        <source>Reminders</source>
        <translation>Erinnerungen</translation>
    </message>
    <message>
        <source>Bluetooth</source>
        <translation>Bluetooth</translation>
    </message>
    <message>
        <source>Automation</source>
        <translation>Automation</translation>
    </message>
    <message>
        <source>Speech</source>
        <translation>Spracherkennung</translation>
    </message>
    <message>
        <source>Media Library</source>
        <translation>Mediathek</translation>
    </message>
    <message>
        <source>Local Network</source>
        <translation>Lokales Netzwerk</translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>Dokumente</translation>
    </message>
    <message>
        <source>Ascending</source>
        <translation>Aufsteigend</translation>
    </message>
    <message>
        <source>Descending</source>
        <translation>Absteigend</translation>
    </message>
    <message>
        <source>all</source>
        <translation>alle</translation>
    </message>
    <message>
        <source>any</source>
        <translation>eine</translation>
    </message>
    <message>
        <source>days</source>
        <translation>Tage</translation>
    </message>
    <message>
        <source>weeks</source>
        <translation>Wochen</translation>
    </message>
    <message>
        <source>months</source>
        <translation>Monate</translation>
    </message>
    <message>
        <source>is</source>
        <translation>ist</translation>
    </message>
    <message>
        <source>is not</source>
        <translation>ist nicht</translation>
    </message>
    <message>
        <source>is any of</source>
        <translation>ist eines von</translation>
    </message>
    <message>
        <source>contains</source>
        <translation>enthält</translation>
    </message>
    <message>
        <source>does not contain</source>
        <translation>enthält nicht</translation>
    </message>
    <message>
        <source>begins with</source>
        <translation>beginnt mit</translation>
    </message>
    <message>
        <source>ends with</source>
        <translation>endet mit</translation>
    </message>
    <message>
        <source>is equal to</source>
        <translation>ist gleich</translation>
    </message>
    <message>
        <source>is above</source>
        <translation>ist größer als</translation>
    </message>
    <message>
        <source>is below</source>
        <translation>ist kleiner als</translation>
    </message>
    <message>
        <source>is between</source>
        <translation>liegt zwischen</translation>
    </message>
    <message>
        <source>is before</source>
        <translation>liegt vor</translation>
    </message>
    <message>
        <source>is after</source>
        <translation>liegt nach</translation>
    </message>
    <message>
        <source>is today</source>
        <translation>ist heute</translation>
    </message>
    <message>
        <source>is this week</source>
        <translation>ist in dieser Woche</translation>
    </message>
    <message>
        <source>is this month</source>
        <translation>ist in diesem Monat</translation>
    </message>
    <message>
        <source>is this year</source>
        <translation>ist in diesem Jahr</translation>
    </message>
    <message>
        <source>is within the last</source>
        <translation>liegt innerhalb der letzten</translation>
    </message>
    <message>
        <source>is unknown</source>
        <translation>ist unbekannt</translation>
    </message>
    <message>
        <source>Update with Homebrew</source>
        <translation>Mit Homebrew aktualisieren</translation>
    </message>
    <message>
        <source>Update with Microsoft AutoUpdate</source>
        <translation>Mit Microsoft AutoUpdate aktualisieren</translation>
    </message>
    <message>
        <source>Open in App Store</source>
        <translation>Im App Store öffnen</translation>
    </message>
    <message>
        <source>Check System Updates</source>
        <translation>System-Updates suchen</translation>
    </message>
    <message>
        <source>Uses the app’s update source to continue.</source>
        <translation>Geht über die Update-Quelle der App weiter.</translation>
    </message>
    <message>
        <source>Update completed. Verifying the installed version…</source>
        <translation>Update abgeschlossen. Die installierte Version wird geprüft …</translation>
    </message>
    <message>
        <source>The update command timed out.</source>
        <translation>Die Zeit für das Update ist abgelaufen.</translation>
    </message>
    <message>
        <source>The update was cancelled.</source>
        <translation>Das Update wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The updater could not be started.</source>
        <translation>Das Update-Programm konnte nicht gestartet werden.</translation>
    </message>
    <message>
        <source>Another app update is already in progress.</source>
        <translation>Ein anderes App-Update ist schon im Gange.</translation>
    </message>
    <message>
        <source>The app could not be updated.</source>
        <translation>Die App konnte nicht aktualisiert werden.</translation>
    </message>
    <message>
        <source>Homebrew is updating itself.</source>
        <translation>Homebrew aktualisiert sich selbst.</translation>
    </message>
    <message>
        <source>Updating…</source>
        <translation>Aktualisieren …</translation>
    </message>
    <message>
        <source>Downloading.</source>
        <translation>Laden.</translation>
    </message>
    <message>
        <source>Downloading…</source>
        <translation>Laden …</translation>
    </message>
    <message>
        <source>Installing.</source>
        <translation>Installieren.</translation>
    </message>
    <message>
        <source>Installing…</source>
        <translation>Installieren …</translation>
    </message>
    <message>
        <source>Waiting for your password.</source>
        <translation>Warten auf Ihr Passwort.</translation>
    </message>
    <message>
        <source>Asks for password</source>
        <translation>Fragt nach Passwort</translation>
    </message>
    <message>
        <source>Verifying the installed version.</source>
        <translation>Prüfen der installierten Version.</translation>
    </message>
    <message>
        <source>Verifying…</source>
        <translation>Prüfen …</translation>
    </message>
    <message>
        <source>Updating… </source>
        <translation>Aktualisieren … </translation>
    </message>
    <message>
        <source>Update checking is disabled.</source>
        <translation>Die Suche nach Updates ist ausgeschaltet.</translation>
    </message>
    <message>
        <source>There is no such application.</source>
        <translation>Dieses Programm gibt es nicht.</translation>
    </message>
    <message>
        <source>The server accepts no more requests for now.</source>
        <translation>Der Server nimmt zurzeit keine Fragen mehr an.</translation>
    </message>
    <message>
        <source>The server answered with an error.</source>
        <translation>Der Server hat mit einem Fehler geantwortet.</translation>
    </message>
    <message>
        <source>The server redirects to an address that is not allowed.</source>
        <translation>Der Server führt zu einer Adresse, der nicht gefolgt wird.</translation>
    </message>
    <message>
        <source>The server’s answer is too large.</source>
        <translation>Die Antwort des Servers ist zu groß.</translation>
    </message>
    <message>
        <source>The server’s answer could not be understood.</source>
        <translation>Die Antwort des Servers war nicht zu verstehen.</translation>
    </message>
    <message>
        <source>The App Store does not list this app.</source>
        <translation>Der App Store führt diese App nicht.</translation>
    </message>
    <message>
        <source>The App Store lists another app under this app’s number.</source>
        <translation>Der App Store führt unter der Nummer dieser App eine andere.</translation>
    </message>
    <message>
        <source>Spotlight did not answer.</source>
        <translation>Spotlight hat nicht geantwortet.</translation>
    </message>
    <message>
        <source>Homebrew reported an error.</source>
        <translation>Homebrew hat einen Fehler gemeldet.</translation>
    </message>
    <message>
        <source>Homebrew did not answer in time.</source>
        <translation>Homebrew hat nicht rechtzeitig geantwortet.</translation>
    </message>
    <message>
        <source>Homebrew’s answer could not be understood.</source>
        <translation>Die Antwort von Homebrew war nicht zu verstehen.</translation>
    </message>
    <message>
        <source>The app’s update feed is not at a secure address.</source>
        <translation>Der Update-Feed der App liegt nicht unter einer sicheren Adresse.</translation>
    </message>
    <message>
        <source>The app updates itself and names no feed.</source>
        <translation>Die App aktualisiert sich selbst und nennt keinen Feed.</translation>
    </message>
    <message>
        <source>The app does not say which version it is.</source>
        <translation>Die App sagt nicht, welche Version sie ist.</translation>
    </message>
    <message>
        <source>The App Store’s listing is shared with other devices.</source>
        <translation>Der Eintrag im App Store gilt auch für andere Geräte.</translation>
    </message>
    <message>
        <source>The App Store’s listing is not for Macs.</source>
        <translation>Der Eintrag im App Store ist nicht für Macs.</translation>
    </message>
    <message>
        <source>This cask’s app updates itself, so Homebrew cannot tell its version. Open the app to check for updates.</source>
        <translation>Die App dieses Casks aktualisiert sich selbst; Homebrew kennt ihre Version daher nicht. Öffnen Sie die App, um nach Updates zu suchen.</translation>
    </message>
    <message>
        <source>This cask has no version numbers.</source>
        <translation>Dieser Cask hat keine Versionsnummern.</translation>
    </message>
    <message>
        <source>Spotlight does not know the app’s number in the App Store.</source>
        <translation>Spotlight kennt die Nummer der App im App Store nicht.</translation>
    </message>
    <message>
        <source>The app declares no source of updates that can be checked.</source>
        <translation>Die App nennt keine Quelle für Updates, die geprüft werden kann.</translation>
    </message>
    <message>
        <source>This cask is pinned in Homebrew.</source>
        <translation>Dieser Cask ist in Homebrew festgehalten.</translation>
    </message>
    <message>
        <source>Update “%1”?</source>
        <translation>„%1“ aktualisieren?</translation>
    </message>
    <message>
        <source>%1 may quit the app while it downloads and installs the update.</source>
        <translation>%1 beendet die App vielleicht, während das Update geladen und installiert wird.</translation>
    </message>
    <message numerus="yes">
        <source>Update %n apps?</source>
        <translation>
            <numerusform>%n App aktualisieren?</numerusform>
            <numerusform>%Ln Apps aktualisieren?</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 may quit the apps while it downloads and installs the updates, one after the other: %2.</source>
        <translation>%1 beendet die Apps vielleicht, während die Updates nacheinander geladen und installiert werden: %2.</translation>
    </message>
    <message>
        <source> and </source>
        <translation> und </translation>
    </message>
    <message>
        <source>The app is up to date.</source>
        <translation>Die App ist auf dem neuesten Stand.</translation>
    </message>
    <message>
        <source>Updated to version %1.</source>
        <translation>Auf Version %1 aktualisiert.</translation>
    </message>
    <message>
        <source>The app is no longer installed.</source>
        <translation>Die App ist nicht mehr installiert.</translation>
    </message>
    <message>
        <source>%1 reported no error, but %2 is still installed.</source>
        <translation>%1 hat keinen Fehler gemeldet, aber %2 ist immer noch installiert.</translation>
    </message>
    <message>
        <source>version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>the old version</source>
        <translation>die alte Version</translation>
    </message>
    <message>
        <source> %1 asked for your password. Run the update in Terminal.</source>
        <translation> %1 hat nach Ihrem Passwort gefragt. Führen Sie das Update im Terminal aus.</translation>
    </message>
    <message>
        <source>Update available: %1 → %2</source>
        <translation>Update verfügbar: %1 → %2</translation>
    </message>
    <message>
        <source>Update available: %1</source>
        <translation>Update verfügbar: %1</translation>
    </message>
    <message>
        <source>1 app could not be checked.</source>
        <translation>1 App konnte nicht geprüft werden.</translation>
    </message>
    <message>
        <source>1 update available.</source>
        <translation>1 Update verfügbar.</translation>
    </message>
    <message>
        <source>Last checked %1. None of your apps can be checked for updates.</source>
        <translation>Zuletzt geprüft: %1. Keine Ihrer Apps kann auf Updates geprüft werden.</translation>
    </message>
    <message>
        <source>Last checked %1. No updates found.</source>
        <translation>Zuletzt geprüft: %1. Keine Updates gefunden.</translation>
    </message>
    <message>
        <source>Up to date</source>
        <translation>Auf dem neuesten Stand</translation>
    </message>
    <message>
        <source>The check failed</source>
        <translation>Die Prüfung ist misslungen</translation>
    </message>
    <message>
        <source>Its source cannot tell</source>
        <translation>Die Quelle kann es nicht sagen</translation>
    </message>
    <message>
        <source> Before: </source>
        <translation> Davor: </translation>
    </message>
    <message>
        <source>. Before: </source>
        <translation>. Davor: </translation>
    </message>
    <message>
        <source>Homebrew manages update checks for this cask.</source>
        <translation>Homebrew kümmert sich um die Suche nach Updates für diesen Cask.</translation>
    </message>
    <message>
        <source>The App Store manages update checks for this app.</source>
        <translation>Der App Store kümmert sich um die Suche nach Updates für diese App.</translation>
    </message>
    <message>
        <source>This app declares a Sparkle update feed.</source>
        <translation>Diese App nennt einen Sparkle-Feed für Updates.</translation>
    </message>
    <message>
        <source>Declared in the app bundle</source>
        <translation>Im App-Bundle angegeben</translation>
    </message>
    <message>
        <source>Built-in apps are updated together with macOS in Software Update.</source>
        <translation>Mitgelieferte Apps werden zusammen mit macOS über die Softwareupdates aktualisiert.</translation>
    </message>
    <message>
        <source>Managed by macOS</source>
        <translation>Von macOS verwaltet</translation>
    </message>
    <message>
        <source>Microsoft AutoUpdate manages updates for this app.</source>
        <translation>Microsoft AutoUpdate kümmert sich um Updates für diese App.</translation>
    </message>
    <message>
        <source>This app declares a Keystone update endpoint.</source>
        <translation>Diese App nennt eine Keystone-Adresse für Updates.</translation>
    </message>
    <message>
        <source>Open the app or its vendor updater to check for updates.</source>
        <translation>Öffnen Sie die App oder das Update-Programm des Herstellers, um nach Updates zu suchen.</translation>
    </message>
    <message>
        <source>Updates for Installed Apps</source>
        <translation>Updates für installierte Apps</translation>
    </message>
    <message>
        <source>App Store, Homebrew Cask, and Sparkle-updated apps can be checked. Checking may contact Apple, Homebrew, and each app’s update server.</source>
        <translation>Apps aus dem App Store, von Homebrew Cask und mit Sparkle-Updates können geprüft werden. Die Prüfung fragt dabei Apple, Homebrew und den Update-Server der jeweiligen App.</translation>
    </message>
    <message>
        <source>Check My Installed Apps for Updates</source>
        <translation>Nach Updates für meine Apps suchen</translation>
    </message>
    <message>
        <source>Update checking is disabled, so update-status rules cannot be evaluated.</source>
        <translation>Die Suche nach Updates ist ausgeschaltet, daher können Regeln zum Update-Status nicht ausgewertet werden.</translation>
    </message>
    <message>
        <source>Receipt detected</source>
        <translation>Beleg gefunden</translation>
    </message>
    <message>
        <source>Held back</source>
        <translation>Zurückgehalten</translation>
    </message>
    <message>
        <source>Checking your installed apps for updates…</source>
        <translation>Es wird nach Updates für Ihre Apps gesucht …</translation>
    </message>
    <message>
        <source>The administrator helper was interrupted.</source>
        <translation>Das Administrator-Hilfsprogramm wurde unterbrochen.</translation>
    </message>
    <message>
        <source>The administrator helper connection closed unexpectedly.</source>
        <translation>Die Verbindung zum Administrator-Hilfsprogramm wurde unerwartet geschlossen.</translation>
    </message>
    <message numerus="yes">
        <source>Watching %n folders.</source>
        <translation>
            <numerusform>%n Ordner wird beobachtet.</numerusform>
            <numerusform>%n Ordner werden beobachtet.</numerusform>
        </translation>
    </message>
    <message>
        <source>Tessellar will replace the current arrangement with the legacy Launchpad layout and save a backup first. The system Launchpad database is opened read-only.</source>
        <translation>Tessellar ersetzt die jetzige Anordnung durch das alte Launchpad-Layout und legt vorher eine Sicherung an. Die Launchpad-Datenbank des Systems wird schreibgeschützt geöffnet.</translation>
    </message>
    <message numerus="yes">
        <source>%n apps were skipped because they could not be resolved to installed apps.</source>
        <translation>
            <numerusform>%n App wurde übersprungen, weil ihr keine installierte App entspricht.</numerusform>
            <numerusform>%n Apps wurden übersprungen, weil ihnen keine installierte App entspricht.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n apps are up to date.</source>
        <translation>
            <numerusform>%n App ist auf dem neuesten Stand.</numerusform>
            <numerusform>%n Apps sind auf dem neuesten Stand.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n apps could not be checked.</source>
        <translation>
            <numerusform>%n App konnte nicht geprüft werden.</numerusform>
            <numerusform>%n Apps konnten nicht geprüft werden.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n updates available.</source>
        <translation>
            <numerusform>%n Update verfügbar.</numerusform>
            <numerusform>%n Updates verfügbar.</numerusform>
        </translation>
    </message>
    <message>
        <source>It has changed since it was approved, and was left alone.</source>
        <translation>Es hat sich seit der Zustimmung geändert und blieb unberührt.</translation>
    </message>
    <message>
        <source>Its folder belongs to someone else.</source>
        <translation>Der Ordner gehört jemand anderem.</translation>
    </message>
    <message>
        <source>A link stands on the way to it.</source>
        <translation>Auf dem Weg dorthin liegt ein Verweis.</translation>
    </message>
    <message>
        <source>It lies on another volume.</source>
        <translation>Es liegt auf einem anderen Volume.</translation>
    </message>
    <message>
        <source>Something else stands in its place.</source>
        <translation>An seiner Stelle liegt etwas anderes.</translation>
    </message>
    <message>
        <source>A volume is mounted in it.</source>
        <translation>Darin ist ein Volume angemeldet.</translation>
    </message>
    <message>
        <source>The administrator helper does not touch this place.</source>
        <translation>Das Administrator-Hilfsprogramm rührt diesen Ort nicht an.</translation>
    </message>
    <message>
        <source>It was not said which item was approved.</source>
        <translation>Es wurde nicht gesagt, welchem Objekt zugestimmt wurde.</translation>
    </message>
    <message>
        <source>The administrator helper could not record the move.</source>
        <translation>Das Administrator-Hilfsprogramm konnte die Bewegung nicht festhalten.</translation>
    </message>
    <message>
        <source>Your Trash could not be opened.</source>
        <translation>Ihr Papierkorb konnte nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>The administrator helper did not take this item.</source>
        <translation>Das Administrator-Hilfsprogramm hat dieses Objekt nicht genommen.</translation>
    </message>
    <message>
        <source>Someone else has access to the administrator helper&apos;s folder.</source>
        <translation>Jemand anderes hat Zugriff auf den Ordner des Administrator-Hilfsprogramms.</translation>
    </message>
    <message>
        <source>It was exchanged while it was moved. What stood in its place is kept for an administrator to look at.</source>
        <translation>Es wurde ausgetauscht, während es bewegt wurde. Was an seiner Stelle lag, wird für einen Administrator aufgehoben.</translation>
    </message>
    <message>
        <source>A folder cannot be moved into itself.</source>
        <translation>Ein Ordner kann nicht in sich selbst bewegt werden.</translation>
    </message>
    <message>
        <source>A smart folder shows what its rules choose; tiles cannot be added to it.</source>
        <translation>Ein intelligenter Ordner zeigt, was seine Regeln auswählen; Kacheln können nicht hinzugefügt werden.</translation>
    </message>
    <message>
        <source>A name cannot be empty.</source>
        <translation>Ein Name kann nicht leer sein.</translation>
    </message>
    <message>
        <source>Before the layout was reset</source>
        <translation>Bevor das Layout zurückgesetzt wurde</translation>
    </message>
    <message>
        <source>Before an arrangement was restored</source>
        <translation>Bevor eine Anordnung wiederhergestellt wurde</translation>
    </message>
    <message>
        <source>Before a backup was restored</source>
        <translation>Bevor eine Sicherung wiederhergestellt wurde</translation>
    </message>
    <message>
        <source>Before the old Launchpad was imported</source>
        <translation>Bevor das alte Launchpad importiert wurde</translation>
    </message>
    <message>
        <source>Written by another program</source>
        <translation>Von einem anderen Programm geschrieben</translation>
    </message>
    <message>
        <source>1 application</source>
        <translation>1 Programm</translation>
    </message>
    <message numerus="yes">
        <source>%n applications</source>
        <translation>
            <numerusform>%n Programm</numerusform>
            <numerusform>%n Programme</numerusform>
        </translation>
    </message>
    <message>
        <source>1 folder</source>
        <translation>1 Ordner</translation>
    </message>
    <message numerus="yes">
        <source>%n folders</source>
        <translation>
            <numerusform>%n Ordner</numerusform>
            <numerusform>%n Ordner</numerusform>
        </translation>
    </message>
    <message>
        <source>1 page</source>
        <translation>1 Seite</translation>
    </message>
    <message numerus="yes">
        <source>%n pages</source>
        <translation>
            <numerusform>%n Seite</numerusform>
            <numerusform>%n Seiten</numerusform>
        </translation>
    </message>
    <message>
        <source>6 Hours</source>
        <translation>6 Stunden</translation>
    </message>
    <message>
        <source>Day</source>
        <translation>Tag</translation>
    </message>
    <message>
        <source>3 Days</source>
        <translation>3 Tage</translation>
    </message>
    <message>
        <source>Week</source>
        <translation>Woche</translation>
    </message>
    <message>
        <source>Version information comes from the app bundle.</source>
        <translation>Die Angaben zur Version kommen aus dem App-Bundle.</translation>
    </message>
    <message>
        <source>Rearrange all applications; a backup is kept</source>
        <translation>Alle Programme neu anordnen; eine Sicherung wird behalten</translation>
    </message>
    <message>
        <source>by-category, with a folder for each, or by-name</source>
        <translation>by-category mit einem Ordner für jede Kategorie oder by-name</translation>
    </message>
    <message>
        <source>Only print the result</source>
        <translation>Nur ausgeben, was dabei herauskäme</translation>
    </message>
    <message>
        <source>Arrange Applications</source>
        <translation>Programme anordnen</translation>
    </message>
    <message>
        <source>Arrange Applications…</source>
        <translation>Programme anordnen …</translation>
    </message>
    <message>
        <source>Could not arrange the applications</source>
        <translation>Die Programme konnten nicht angeordnet werden</translation>
    </message>
    <message>
        <source>Old Launchpad</source>
        <translation>Altes Launchpad</translation>
    </message>
    <message>
        <source>By Category</source>
        <translation>Nach Kategorien</translation>
    </message>
    <message>
        <source>By Name</source>
        <translation>Nach Namen</translation>
    </message>
    <message>
        <source>Skipped: %1</source>
        <translation>Übersprungen: %1</translation>
    </message>
    <message>
        <source>1 other application comes on a new page at the end.</source>
        <translation>1 weiteres Programm kommt auf eine neue Seite am Ende.</translation>
    </message>
    <message numerus="yes">
        <source>%n other applications come on new pages at the end.</source>
        <translation>
            <numerusform>%n weiteres Programm kommt auf eine neue Seite am Ende.</numerusform>
            <numerusform>%n weitere Programme kommen auf neue Seiten am Ende.</numerusform>
        </translation>
    </message>
    <message>
        <source>A folder for each category of applications, and those without one by name after the folders.</source>
        <translation>Ein Ordner für jede Kategorie von Programmen; die ohne Kategorie folgen nach Namen.</translation>
    </message>
    <message>
        <source>All applications in alphabetical order, without folders.</source>
        <translation>Alle Programme in alphabetischer Reihenfolge, ohne Ordner.</translation>
    </message>
    <message>
        <source>What lies behind the tiles: the desktop&apos;s picture, blurred, or the launcher&apos;s own</source>
        <translation>Was hinter den Kacheln liegt: das Schreibtischbild, weichgezeichnet, oder das des Launchers</translation>
    </message>
    <message>
        <source>Desktop picture</source>
        <translation>Schreibtischbild</translation>
    </message>
    <message>
        <source>Plain</source>
        <translation>Schlicht</translation>
    </message>
    <message>
        <source>Size of text in sheets and menus, of the usual; as large as the system&apos;s, where it is not set</source>
        <translation>Größe der Texte in Dialogen und Menüs, gemessen an der üblichen; ohne Angabe so groß wie die des Systems</translation>
    </message>
    <message>
        <source>Could not forget the place</source>
        <translation>Der Platz konnte nicht vergessen werden</translation>
    </message>
    <message>
        <source>The edit stays in the window, below later ones, and is saved with them.</source>
        <translation>Die Änderung bleibt im Fenster, unter späteren, und wird mit ihnen gesichert.</translation>
    </message>
    <message>
        <source>Aliases are not kept.</source>
        <translation>Aliasse werden nicht behalten.</translation>
    </message>
    <message>
        <source>Smart Folders lose their tiles, which can be added again.</source>
        <translation>Intelligente Ordner verlieren ihre Kacheln; sie können wieder hinzugefügt werden.</translation>
    </message>
    <message>
        <source>%1  cannot be read
</source>
        <translation>%1  kann nicht gelesen werden
</translation>
    </message>
    <message>
        <source> (alias)</source>
        <translation> (Alias)</translation>
    </message>
    <message>
        <source> (hidden)</source>
        <translation> (ausgeblendet)</translation>
    </message>
    <message>
        <source>The version whose news was shown last</source>
        <translation>Die Version, deren Neuigkeiten zuletzt gezeigt wurden</translation>
    </message>
    <message>
        <source>“%1” cannot be a shortcut. “option+space” can.</source>
        <translation>„%1“ kann kein Kurzbefehl sein. „option+space“ kann es.</translation>
    </message>
    <message>
        <source>“%1” is not a usable address: it must begin with “https://” and have no query.</source>
        <translation>„%1“ ist keine Adresse, die gefragt werden kann: Sie beginnt mit „https://“ und hat keine Abfrage.</translation>
    </message>
    <message>
        <source>“%1” is not the path of a folder: it must begin with “/” or “~/”.</source>
        <translation>„%1“ ist kein Ordner: Ein Pfad beginnt mit „/“ oder „~/“.</translation>
    </message>
    <message>
        <source>keys such as option+space</source>
        <translation>Tasten wie option+space</translation>
    </message>
    <message>
        <source>an address</source>
        <translation>eine Adresse</translation>
    </message>
    <message>
        <source>“%1” is missing.</source>
        <translation>„%1“ fehlt.</translation>
    </message>
    <message>
        <source>%1 needs a value.</source>
        <translation>%1 braucht einen Wert.</translation>
    </message>
    <message>
        <source>%1 needs %2 values.</source>
        <translation>%1 braucht %2 Werte.</translation>
    </message>
    <message>
        <source>Unexpected: %1</source>
        <translation>Unerwartet: %1</translation>
    </message>
    <message>
        <source>%1 cannot be “%2”, but one of these: %3.</source>
        <translation>%1 kann nicht „%2“ sein, sondern eines von diesen: %3.</translation>
    </message>
    <message>
        <source>%1 cannot be “%2”: it goes from %3 to %4.</source>
        <translation>%1 kann nicht „%2“ sein: Es geht von %3 bis %4.</translation>
    </message>
    <message>
        <source>%1 and %2 do not go together.</source>
        <translation>%1 und %2 gehen nicht zusammen.</translation>
    </message>
    <message>
        <source>%1 cannot be “%2”.</source>
        <translation>%1 kann nicht „%2“ sein.</translation>
    </message>
    <message>
        <source>Some folders could not be searched.</source>
        <translation>Einige Ordner konnten nicht durchsucht werden.</translation>
    </message>
    <message>
        <source>Usage</source>
        <translation>Aufruf</translation>
    </message>
    <message>
        <source>OPTIONS</source>
        <translation>OPTIONEN</translation>
    </message>
    <message>
        <source>SUBCOMMAND</source>
        <translation>BEFEHL</translation>
    </message>
    <message>
        <source>SUBCOMMANDS</source>
        <translation>BEFEHLE</translation>
    </message>
    <message>
        <source>Positionals</source>
        <translation>Argumente</translation>
    </message>
    <message>
        <source>REQUIRED</source>
        <translation>NÖTIG</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Subcommands</source>
        <translation>Befehle</translation>
    </message>
    <message>
        <source>The tiles are as they were before you undid or redid it.</source>
        <translation>Die Kacheln liegen wie vor dem Widerrufen oder Wiederholen.</translation>
    </message>
    <message>
        <source>The remembered places could not be read: nothing was forgotten.</source>
        <translation>Die gemerkten Plätze konnten nicht gelesen werden: Nichts wurde vergessen.</translation>
    </message>
    <message>
        <source>Before the applications were arranged</source>
        <translation>Bevor die Programme angeordnet wurden</translation>
    </message>
    <message>
        <source>Finish what is open in the window first.</source>
        <translation>Beenden Sie zuerst, was im Fenster geöffnet ist.</translation>
    </message>
    <message>
        <source>The window cannot show that: it is hidden, or of the other display mode.</source>
        <translation>Das Fenster kann das nicht zeigen: Es ist ausgeblendet oder gehört zur anderen Darstellung.</translation>
    </message>
</context>
<context>
    <name>UnplacedSheet</name>
    <message>
        <source>Hidden and Remembered</source>
        <translation>Ausgeblendet und gemerkt</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>UpdateRow</name>
    <message>
        <source>More</source>
        <translation>Mehr</translation>
    </message>
</context>
<context>
    <name>UpdatesSheet</name>
    <message>
        <source>Not checked yet.</source>
        <translation>Noch nicht geprüft.</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Check Now</source>
        <translation>Jetzt suchen</translation>
    </message>
    <message>
        <source>Cancel All</source>
        <translation>Alle abbrechen</translation>
    </message>
    <message>
        <source>Update All</source>
        <translation>Alle aktualisieren</translation>
    </message>
    <message>
        <source>What can be updated is listed here.</source>
        <translation>Was aktualisiert werden kann, steht hier.</translation>
    </message>
    <message>
        <source>Check for updates</source>
        <translation>Nach Updates suchen</translation>
    </message>
    <message>
        <source>Check for updates every</source>
        <translation>Nach Updates suchen, jeweils nach</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>tessellar::AlertPanel</name>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Leave It</source>
        <translation>Unverändert lassen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
</context>
<context>
    <name>tessellar::ArrangementsPanel</name>
    <message>
        <source>Looking for arrangements…</source>
        <translation>Anordnungen werden gesucht …</translation>
    </message>
    <message>
        <source>There are no saved arrangements yet.</source>
        <translation>Es gibt noch keine gesicherten Anordnungen.</translation>
    </message>
    <message>
        <source>Arrangements belong to the current display mode (%1).</source>
        <translation>Anordnungen gehören zum jetzigen Anzeigemodus (%1).</translation>
    </message>
    <message>
        <source>Full Screen</source>
        <translation>Bildschirmfüllend</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fenster</translation>
    </message>
    <message>
        <source>Undo %1</source>
        <translation>Widerrufen: %1</translation>
    </message>
    <message>
        <source>Restore “%1”?</source>
        <translation>„%1“ wiederherstellen?</translation>
    </message>
    <message>
        <source>The current arrangement will be backed up first. Apps that are no longer installed will be removed, and newly installed apps will be placed on new pages at the end.</source>
        <translation>Die jetzige Anordnung wird vorher gesichert. Apps, die nicht mehr installiert sind, werden entfernt, und neu installierte kommen auf neue Seiten am Ende.</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Wiederherstellen</translation>
    </message>
    <message>
        <source>Rename…</source>
        <translation>Umbenennen …</translation>
    </message>
    <message>
        <source>Replace with the Current One…</source>
        <translation>Durch die jetzige ersetzen …</translation>
    </message>
    <message>
        <source>Export…</source>
        <translation>Exportieren …</translation>
    </message>
    <message>
        <source>Delete…</source>
        <translation>Löschen …</translation>
    </message>
    <message>
        <source>Replace “%1”?</source>
        <translation>„%1“ ersetzen?</translation>
    </message>
    <message>
        <source>The current arrangement is saved under this name. The current launcher layout will not change.</source>
        <translation>Die jetzige Anordnung wird unter diesem Namen gesichert. Das jetzige Layout des Launchers ändert sich nicht.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Delete “%1”?</source>
        <translation>„%1“ löschen?</translation>
    </message>
    <message>
        <source>This saved arrangement will be removed. The current launcher layout will not change.</source>
        <translation>Diese gesicherte Anordnung wird entfernt. Das jetzige Layout des Launchers ändert sich nicht.</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>New name of “%1”</source>
        <translation>Neuer Name von „%1“</translation>
    </message>
    <message>
        <source>Where “%1” is copied to</source>
        <translation>Wohin „%1“ kopiert wird</translation>
    </message>
    <message>
        <source>Path of a file that was exported; it can be dropped here, too</source>
        <translation>Pfad einer exportierten Datei; sie kann auch hier abgelegt werden</translation>
    </message>
    <message>
        <source>Name this arrangement so it can be restored later.</source>
        <translation>Geben Sie dieser Anordnung einen Namen, damit sie später wiederhergestellt werden kann.</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importieren</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Sichern</translation>
    </message>
    <message>
        <source>Give the whole path, beginning with “/” or “~/”.</source>
        <translation>Geben Sie den ganzen Pfad an, beginnend mit „/“ oder „~/“.</translation>
    </message>
    <message>
        <source>Exported “%1”.</source>
        <translation>„%1“ exportiert.</translation>
    </message>
    <message>
        <source>Cannot be read</source>
        <translation>Nicht lesbar</translation>
    </message>
</context>
<context>
    <name>tessellar::ArrangingPanel</name>
    <message>
        <source>Page %1 of %2</source>
        <translation>Seite %1 von %2</translation>
    </message>
</context>
<context>
    <name>tessellar::BackupsPanel</name>
    <message>
        <source>Looking for backups…</source>
        <translation>Sicherungen werden gesucht …</translation>
    </message>
    <message>
        <source>There are no backups yet.</source>
        <translation>Es gibt noch keine Sicherungen.</translation>
    </message>
    <message>
        <source>Restore the backup of %1?</source>
        <translation>Sicherung vom %1 wiederherstellen?</translation>
    </message>
    <message>
        <source>The current arrangement will be backed up first. Apps that are no longer installed will be removed, and newly installed apps will be placed on new pages at the end.</source>
        <translation>Die jetzige Anordnung wird vorher gesichert. Apps, die nicht mehr installiert sind, werden entfernt, und neu installierte kommen auf neue Seiten am Ende.</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Wiederherstellen</translation>
    </message>
</context>
<context>
    <name>tessellar::InformationPanel</name>
    <message>
        <source>Version %1 (%2)</source>
        <translation>Version %1 (%2)</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
</context>
<context>
    <name>tessellar::LauncherWindow</name>
    <message>
        <source>Quit without saving?</source>
        <translation>Ohne Sichern beenden?</translation>
    </message>
    <message>
        <source>The last changes could not be saved, and would be lost.</source>
        <translation>Die letzten Änderungen konnten nicht gesichert werden und würden verloren gehen.</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
</context>
<context>
    <name>tessellar::PastRemovalsPanel</name>
    <message>
        <source>Nothing was removed yet.</source>
        <translation>Es wurde noch nichts entfernt.</translation>
    </message>
    <message>
        <source>put back</source>
        <translation>zurückgelegt</translation>
    </message>
    <message>
        <source>1 item in the Trash</source>
        <translation>1 Objekt im Papierkorb</translation>
    </message>
    <message numerus="yes">
        <source>%n items in the Trash</source>
        <translation>
            <numerusform>%n Objekt im Papierkorb</numerusform>
            <numerusform>%n Objekte im Papierkorb</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>tessellar::RemovalPanel</name>
    <message>
        <source>at least %1</source>
        <translation>mindestens %1</translation>
    </message>
    <message>
        <source>1 item</source>
        <translation>1 Objekt</translation>
    </message>
    <message>
        <source>%1 will stay</source>
        <translation>%1 bleiben</translation>
    </message>
    <message>
        <source>Some folders could not be searched.</source>
        <translation>Einige Ordner konnten nicht durchsucht werden.</translation>
    </message>
    <message>
        <source>Looking for files of “%1”…</source>
        <translation>Dateien von „%1“ werden gesucht …</translation>
    </message>
    <message>
        <source>Stopping…</source>
        <translation>Wird angehalten …</translation>
    </message>
    <message numerus="yes">
        <source>%n items</source>
        <translation>
            <numerusform>%n Objekt</numerusform>
            <numerusform>%n Objekte</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>tessellar::SettingsPanel</name>
    <message>
        <source>Rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>Icon size</source>
        <translation>Symbolgröße</translation>
    </message>
    <message>
        <source>Space between columns</source>
        <translation>Spaltenabstand</translation>
    </message>
    <message>
        <source>Space between rows</source>
        <translation>Zeilenabstand</translation>
    </message>
    <message>
        <source>Size of names</source>
        <translation>Größe der Namen</translation>
    </message>
    <message>
        <source>Rows in a folder</source>
        <translation>Zeilen im Ordner</translation>
    </message>
    <message>
        <source>Columns in a folder</source>
        <translation>Spalten im Ordner</translation>
    </message>
    <message>
        <source>Icon size in a folder</source>
        <translation>Symbolgröße im Ordner</translation>
    </message>
    <message>
        <source>Space in a folder</source>
        <translation>Abstand im Ordner</translation>
    </message>
    <message>
        <source>Grid in the window</source>
        <translation>Raster im Fenster</translation>
    </message>
    <message>
        <source>Grid in full screen</source>
        <translation>Raster bildschirmfüllend</translation>
    </message>
    <message>
        <source>Layout settings are remembered separately for each mode.</source>
        <translation>Die Einstellungen des Layouts werden für jeden Modus eigens gemerkt.</translation>
    </message>
    <message>
        <source>1 application</source>
        <translation>1 Programm</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Add a folder</source>
        <translation>Ordner hinzufügen</translation>
    </message>
    <message>
        <source>Its path, such as ~/Tools</source>
        <translation>Sein Pfad, etwa ~/Tools</translation>
    </message>
    <message>
        <source>Depth</source>
        <translation>Tiefe</translation>
    </message>
    <message>
        <source>Applications</source>
        <translation>Programme</translation>
    </message>
    <message>
        <source>Show in</source>
        <translation>Zeigen</translation>
    </message>
    <message>
        <source>Start at login</source>
        <translation>Beim Anmelden starten</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Hot corner</source>
        <translation>Aktive Ecke</translation>
    </message>
    <message>
        <source>Opening</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Usage</source>
        <translation>Nutzung</translation>
    </message>
    <message>
        <source>When and how often applications are started here, for smart folders. It stays on this computer.</source>
        <translation>Wann und wie oft Programme von hier gestartet werden, für intelligente Ordner. Das bleibt auf diesem Computer.</translation>
    </message>
    <message>
        <source>Forget…</source>
        <translation>Vergessen …</translation>
    </message>
    <message>
        <source>Removal helper: %1</source>
        <translation>Hilfsprogramm zum Entfernen: %1</translation>
    </message>
    <message>
        <source>Usage and Removal</source>
        <translation>Nutzung und Entfernen</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Erscheinungsbild</translation>
    </message>
    <message>
        <source>Sheets and menus</source>
        <translation>Dialoge und Menüs</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>Reduce motion</source>
        <translation>Bewegung reduzieren</translation>
    </message>
    <message>
        <source>Updates for Installed Apps</source>
        <translation>Updates für installierte Apps</translation>
    </message>
    <message>
        <source>Check for updates</source>
        <translation>Nach Updates suchen</translation>
    </message>
    <message>
        <source>How often</source>
        <translation>Wie oft</translation>
    </message>
    <message>
        <source>Sources, and what is skipped</source>
        <translation>Quellen und Übersprungenes</translation>
    </message>
    <message>
        <source>Show…</source>
        <translation>Zeigen …</translation>
    </message>
    <message>
        <source>The removal helper answers.</source>
        <translation>Das Hilfsprogramm zum Entfernen antwortet.</translation>
    </message>
    <message>
        <source>Forget when applications were started?</source>
        <translation>Vergessen, wann Programme gestartet wurden?</translation>
    </message>
    <message>
        <source>Smart folders with rules about use start over. This cannot be undone.</source>
        <translation>Intelligente Ordner, die sich nach der Nutzung richten, beginnen von vorn. Das kann nicht widerrufen werden.</translation>
    </message>
    <message>
        <source>Forget</source>
        <translation>Vergessen</translation>
    </message>
    <message numerus="yes">
        <source>%Ln applications</source>
        <translation>
            <numerusform>%Ln Programm</numerusform>
            <numerusform>%Ln Programme</numerusform>
        </translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>Background</source>
        <translation>Hintergrund</translation>
    </message>
    <message>
        <source>Text size</source>
        <translation>Textgröße</translation>
    </message>
    <message>
        <source>Left out, because they are incomplete: %1</source>
        <translation>Ausgelassen, weil sie unvollständig sind: %1</translation>
    </message>
    <message>
        <source>A shortcut of your desktop that runs “%1” shows the launcher from anywhere.</source>
        <translation>Ein Tastenkürzel Ihres Desktops, das „%1“ ausführt, zeigt den Launcher von überall.</translation>
    </message>
    <message>
        <source>Copy Command</source>
        <translation>Befehl kopieren</translation>
    </message>
    <message>
        <source>Another program has these keys.</source>
        <translation>Ein anderes Programm hat diese Tasten.</translation>
    </message>
    <message>
        <source>The keys and the corner need a launcher that stays in the background: start it with “tessellar --resident”, or at login.</source>
        <translation>Die Tasten und die Ecke brauchen einen Launcher, der ohne sein Fenster weiterläuft: Starten Sie ihn mit „tessellar --resident“ oder bei der Anmeldung.</translation>
    </message>
</context>
<context>
    <name>tessellar::Sheets</name>
    <message>
        <source>Discard your changes?</source>
        <translation>Änderungen verwerfen?</translation>
    </message>
    <message>
        <source>What you entered has not been used yet.</source>
        <translation>Ihre Eingaben wurden noch nicht verwendet.</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
</context>
<context>
    <name>tessellar::SmartFolderPanel</name>
    <message>
        <source>New Smart Folder</source>
        <translation>Neuer intelligenter Ordner</translation>
    </message>
    <message>
        <source>Edit Smart Folder</source>
        <translation>Intelligenten Ordner bearbeiten</translation>
    </message>
    <message>
        <source>No apps match.</source>
        <translation>Keine Apps passen.</translation>
    </message>
    <message>
        <source>1 app matches.</source>
        <translation>1 App passt.</translation>
    </message>
    <message>
        <source>and</source>
        <translation>und</translation>
    </message>
    <message>
        <source>Save Anyway</source>
        <translation>Trotzdem sichern</translation>
    </message>
    <message>
        <source>Discard your changes?</source>
        <translation>Änderungen verwerfen?</translation>
    </message>
    <message>
        <source>This Smart Folder has not been saved.</source>
        <translation>Dieser intelligente Ordner wurde nicht gesichert.</translation>
    </message>
    <message>
        <source>“%1” has changes that have not been saved.</source>
        <translation>„%1“ hat Änderungen, die nicht gesichert wurden.</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
    <message numerus="yes">
        <source>%n apps match.</source>
        <translation>
            <numerusform>%n App passt.</numerusform>
            <numerusform>%n Apps passen.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>tessellar::TileSearch</name>
    <message>
        <source>Hidden</source>
        <translation>Ausgeblendet</translation>
    </message>
</context>
<context>
    <name>tessellar::UnplacedPanel</name>
    <message>
        <source>Hidden applications</source>
        <translation>Ausgeblendete Programme</translation>
    </message>
    <message>
        <source>Smart Folders without a tile</source>
        <translation>Intelligente Ordner ohne Kachel</translation>
    </message>
    <message>
        <source>Places kept for applications that are gone</source>
        <translation>Plätze für verschwundene Programme</translation>
    </message>
    <message>
        <source>Unhide</source>
        <translation>Einblenden</translation>
    </message>
    <message>
        <source>Add Tile</source>
        <translation>Kachel hinzufügen</translation>
    </message>
    <message>
        <source>Forget</source>
        <translation>Vergessen</translation>
    </message>
    <message>
        <source>Nothing is hidden, and everything has its tile.</source>
        <translation>Nichts ist ausgeblendet, und alles hat seine Kachel.</translation>
    </message>
    <message>
        <source>Forget the place of “%1”?</source>
        <translation>Den Platz von „%1“ vergessen?</translation>
    </message>
    <message>
        <source>Should it be installed again, its tile comes at the end. This cannot be undone.</source>
        <translation>Wird sie wieder installiert, kommt ihre Kachel ans Ende. Das kann nicht rückgängig gemacht werden.</translation>
    </message>
</context>
<context>
    <name>tessellar::UpdateRows</name>
    <message>
        <source>Open App</source>
        <translation>App öffnen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Its updates are not offered.</source>
        <translation>Ihre Updates werden nicht angeboten.</translation>
    </message>
    <message>
        <source>Not checked yet.</source>
        <translation>Noch nicht geprüft.</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Updates</translation>
    </message>
    <message>
        <source>Updated</source>
        <translation>Aktualisiert</translation>
    </message>
    <message>
        <source>Held Back</source>
        <translation>Zurückgehalten</translation>
    </message>
    <message>
        <source>Could Not Be Checked</source>
        <translation>Konnten nicht geprüft werden</translation>
    </message>
    <message>
        <source>Cannot Be Checked</source>
        <translation>Können nicht geprüft werden</translation>
    </message>
</context>
<context>
    <name>tessellar::UpdatesPanel</name>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
</context>
</TS>
