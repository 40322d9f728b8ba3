<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>APIClient</name>
    <message>
        <source>The shop replied %1 (%2).</source>
        <translation>Der Shop hat mit %1 geantwortet (%2).</translation>
    </message>
    <message>
        <source>The shop replied %1.</source>
        <translation>Der Shop hat mit %1 geantwortet.</translation>
    </message>
    <message>
        <source>You&apos;ve been signed out.</source>
        <translation>Sie wurden abgemeldet.</translation>
    </message>
    <message>
        <source>The shop is busy. Try again in a minute.</source>
        <translation>Der Shop ist gerade ausgelastet. Versuchen Sie es in einer Minute erneut.</translation>
    </message>
    <message>
        <source>The shop&apos;s address doesn&apos;t start with https://, so Quennet won&apos;t send it anything. Check the shopBaseURL setting.</source>
        <translation>Die Adresse des Shops beginnt nicht mit https://, daher sendet Quennet nichts an ihn. Prüfen Sie die Einstellung shopBaseURL.</translation>
    </message>
    <message>
        <source>The shop sent something the app didn&apos;t understand.</source>
        <translation>Der Shop hat etwas gesendet, das die App nicht versteht.</translation>
    </message>
</context>
<context>
    <name>Account</name>
    <message>
        <source>Couldn&apos;t sign out: the desktop&apos;s secret store is locked or refused access. Unlock it and try again.</source>
        <translation>Abmelden nicht möglich: Der Passwortspeicher der Arbeitsumgebung ist gesperrt oder verweigert den Zugriff. Entsperren Sie ihn und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>Sign-in was cancelled in the browser.</source>
        <translation>Die Anmeldung wurde im Browser abgebrochen.</translation>
    </message>
    <message>
        <source>That code expired.</source>
        <translation>Dieser Code ist abgelaufen.</translation>
    </message>
    <message>
        <source>That code didn&apos;t work. Start again.</source>
        <translation>Dieser Code hat nicht funktioniert. Beginnen Sie von vorn.</translation>
    </message>
    <message>
        <source>Couldn&apos;t reach the shop. Check your connection and try again.</source>
        <translation>Der Shop ist nicht erreichbar. Prüfen Sie Ihre Verbindung und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>Couldn&apos;t save your sign-in on this computer. Try again.</source>
        <translation>Ihre Anmeldung konnte auf diesem Rechner nicht gespeichert werden. Versuchen Sie es erneut.</translation>
    </message>
</context>
<context>
    <name>AppDelegate</name>
    <message>
        <source>Shuffle couldn&apos;t change your wallpaper</source>
        <translation>Der Zufallswechsel konnte Ihr Hintergrundbild nicht ändern</translation>
    </message>
    <message>
        <source>Shuffle Settings</source>
        <translation>Einstellungen für Zufallswechsel</translation>
    </message>
    <message>
        <source>Couldn&apos;t set the Do Not Disturb wallpaper</source>
        <translation>Das Hintergrundbild für „Nicht stören“ konnte nicht gesetzt werden</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>You&apos;ve been signed out</source>
        <translation>Sie wurden abgemeldet</translation>
    </message>
    <message>
        <source>Sign in again to use your packs.</source>
        <translation>Melden Sie sich erneut an, um Ihre Pakete zu verwenden.</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Anmelden</translation>
    </message>
    <message>
        <source>Quennet is running</source>
        <translation>Quennet läuft</translation>
    </message>
    <message>
        <source>This desktop has no tray for its icon. Open Quennet from your apps to use it.</source>
        <translation>Diese Arbeitsumgebung hat keinen Systemabschnitt für das Symbol. Öffnen Sie Quennet über Ihre Anwendungen, um es zu verwenden.</translation>
    </message>
    <message>
        <source>Open Quennet</source>
        <translation>Quennet öffnen</translation>
    </message>
    <message>
        <source>windows, views, networking and D-Bus</source>
        <translation>Fenster, Ansichten, Netzwerk und D-Bus</translation>
    </message>
    <message>
        <source>coroutines over Qt</source>
        <translation>Koroutinen für Qt</translation>
    </message>
    <message>
        <source>the desktop&apos;s secret store</source>
        <translation>der Passwortspeicher der Arbeitsumgebung</translation>
    </message>
    <message>
        <source>reading HEIC wallpapers</source>
        <translation>Lesen von HEIC-Hintergrundbildern</translation>
    </message>
    <message>
        <source>decoding HEVC pictures</source>
        <translation>Dekodieren von HEVC-Bildern</translation>
    </message>
    <message>
        <source>wallpaper metadata</source>
        <translation>Metadaten der Hintergrundbilder</translation>
    </message>
    <message>
        <source>checking downloads (SHA-256)</source>
        <translation>Prüfen der Downloads (SHA-256)</translation>
    </message>
    <message>
        <source>desktop settings (GSettings)</source>
        <translation>Einstellungen der Arbeitsumgebung (GSettings)</translation>
    </message>
    <message>
        <source>the desktop&apos;s event sounds</source>
        <translation>die Ereignisklänge der Arbeitsumgebung</translation>
    </message>
    <message>
        <source>the panel on Wayland desktops</source>
        <translation>das Panel auf Wayland-Arbeitsumgebungen</translation>
    </message>
    <message>
        <source>the desktop picture on X11</source>
        <translation>das Hintergrundbild unter X11</translation>
    </message>
</context>
<context>
    <name>ArchiveSaver</name>
    <message>
        <source>The shop sent this archive without a checksum, so it wasn&apos;t saved. Try again later.</source>
        <translation>Der Shop hat dieses Archiv ohne Prüfsumme gesendet, daher wurde es nicht gespeichert. Versuchen Sie es später erneut.</translation>
    </message>
</context>
<context>
    <name>AutomationClient</name>
    <message>
        <source>Couldn&apos;t reach Quennet: %1</source>
        <translation>Quennet ist nicht erreichbar: %1</translation>
    </message>
    <message>
        <source>There&apos;s no session bus to reach Quennet on.</source>
        <translation>Es gibt keinen Sitzungsbus, über den Quennet erreichbar wäre.</translation>
    </message>
    <message>
        <source>Approve this computer on the shop&apos;s website in your browser.</source>
        <translation>Bestätigen Sie diesen Rechner im Browser auf der Website des Shops.</translation>
    </message>
    <message>
        <source>Approve this computer in your browser: %1</source>
        <translation>Bestätigen Sie diesen Rechner in Ihrem Browser: %1</translation>
    </message>
    <message>
        <source>Code: %1</source>
        <translation>Code: %1</translation>
    </message>
    <message>
        <source>Check the code there matches this one. Waiting for approval…</source>
        <translation>Prüfen Sie, ob der Code dort mit diesem übereinstimmt. Warten auf Bestätigung&#xa0;…</translation>
    </message>
    <message>
        <source>Signed in.</source>
        <translation>Angemeldet.</translation>
    </message>
    <message>
        <source>Sign-in was cancelled.</source>
        <translation>Die Anmeldung wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Quennet quit before the sign-in ended.</source>
        <translation>Quennet wurde beendet, bevor die Anmeldung abgeschlossen war.</translation>
    </message>
</context>
<context>
    <name>AutomationService</name>
    <message>
        <source>%1 or %2</source>
        <translation>%1 oder %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; isn&apos;t an edition. Use %2.</source>
        <translation>„%1“ ist keine Ausführung. Verwenden Sie %2.</translation>
    </message>
    <message>
        <source>Name a wallpaper as pack/colourway.</source>
        <translation>Geben Sie ein Hintergrundbild als Paket/Farbvariante an.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; isn&apos;t a wallpaper. Name one as pack/colourway.</source>
        <translation>„%1“ ist kein Hintergrundbild. Geben Sie eines als Paket/Farbvariante an.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; isn&apos;t a shuffle interval. Use %2.</source>
        <translation>„%1“ ist kein Wechselintervall. Verwenden Sie %2.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; isn&apos;t a shuffle source. Use %2.</source>
        <translation>„%1“ ist keine Quelle für den Zufallswechsel. Verwenden Sie %2.</translation>
    </message>
</context>
<context>
    <name>AutostartEntry</name>
    <message>
        <source>Could not write %1.</source>
        <translation>%1 konnte nicht geschrieben werden.</translation>
    </message>
</context>
<context>
    <name>ColourwayTile</name>
    <message>
        <source>New</source>
        <translation>Neu</translation>
    </message>
    <message>
        <source>%1 from %2</source>
        <translation>%1 aus %2</translation>
    </message>
    <message>
        <source>On a display</source>
        <translation>Auf einem Bildschirm</translation>
    </message>
    <message>
        <source>Favourite</source>
        <translation>Favorit</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>change the wallpaper now</source>
        <translation>das Hintergrundbild jetzt wechseln</translation>
    </message>
    <message>
        <source>Changes the wallpaper now, as the shuffle&apos;s settings say.
</source>
        <translation>Wechselt das Hintergrundbild jetzt, wie in den Einstellungen für den Zufallswechsel festgelegt.
</translation>
    </message>
    <message>
        <source>set a wallpaper on all displays</source>
        <translation>ein Hintergrundbild auf allen Bildschirmen setzen</translation>
    </message>
    <message>
        <source>Sets a wallpaper on all displays, downloading it first when needed.

Options:
  --edition EDITION   automatic (the default), timeOfDay, light or dark
</source>
        <translation>Setzt ein Hintergrundbild auf allen Bildschirmen und lädt es bei Bedarf zuerst herunter.

Optionen:
  --edition EDITION   automatic (Vorgabe), timeOfDay, light oder dark
</translation>
    </message>
    <message>
        <source>print the main display&apos;s wallpaper</source>
        <translation>das Hintergrundbild des Hauptbildschirms ausgeben</translation>
    </message>
    <message>
        <source>Prints the main display&apos;s wallpaper: PACK/COLOURWAY, its name and its pack&apos;s
name, separated by tabs.
</source>
        <translation>Gibt das Hintergrundbild des Hauptbildschirms aus: PACK/COLOURWAY, seinen Namen
und den Namen seines Pakets, durch Tabulatoren getrennt.
</translation>
    </message>
    <message>
        <source>make the main display&apos;s wallpaper a favourite</source>
        <translation>das Hintergrundbild des Hauptbildschirms zum Favoriten machen</translation>
    </message>
    <message>
        <source>Makes the main display&apos;s wallpaper a favourite. A favourite already stays
where it is: this never removes one.
</source>
        <translation>Macht das Hintergrundbild des Hauptbildschirms zum Favoriten. Ein bestehender
Favorit bleibt, wo er ist: Dieser Befehl entfernt nie einen.
</translation>
    </message>
    <message>
        <source>turn the shuffle on or off, and say how</source>
        <translation>den Zufallswechsel ein- oder ausschalten und einstellen</translation>
    </message>
    <message>
        <source>Turns the shuffle on or off, and changes how often it shuffles and what from.

Options:
  --on, --off         shuffle, or stop shuffling
  --interval INTERVAL hour, sixHours, day or week; unchanged when left out
  --source SOURCE     all or favourites; unchanged when left out
</source>
        <translation>Schaltet den Zufallswechsel ein oder aus und ändert, wie oft und woraus er wählt.

Optionen:
  --on, --off         wechseln oder nicht mehr wechseln
  --interval INTERVAL hour, sixHours, day oder week; ohne Angabe unverändert
  --source SOURCE     all oder favourites; ohne Angabe unverändert
</translation>
    </message>
    <message>
        <source>choose the wallpaper for Do Not Disturb</source>
        <translation>das Hintergrundbild für „Nicht stören“ wählen</translation>
    </message>
    <message>
        <source>Chooses the wallpaper every display shows while Do Not Disturb is on; without
a wallpaper, none.

Options:
  --edition EDITION   automatic (the default), timeOfDay, light or dark
</source>
        <translation>Wählt das Hintergrundbild, das jeder Bildschirm zeigt, solange „Nicht stören“
aktiv ist; ohne Hintergrundbild keines.

Optionen:
  --edition EDITION   automatic (Vorgabe), timeOfDay, light oder dark
</translation>
    </message>
    <message>
        <source>list your wallpapers</source>
        <translation>Ihre Hintergrundbilder auflisten</translation>
    </message>
    <message>
        <source>Lists your wallpapers whose name or pack name holds every word of the text,
regardless of case; all of them without text. Favourites come first, newest
first, then the rest in library order. Each line is PACK/COLOURWAY, the
wallpaper&apos;s name and its pack&apos;s name, separated by tabs.
</source>
        <translation>Listet Ihre Hintergrundbilder auf, deren Name oder Paketname jedes Wort des
Textes enthält, ohne Beachtung der Groß- und Kleinschreibung; ohne Text alle.
Favoriten kommen zuerst, die neuesten vorn, danach der Rest in der Reihenfolge
der Bibliothek. Jede Zeile enthält PACK/COLOURWAY, den Namen des
Hintergrundbilds und den Namen seines Pakets, durch Tabulatoren getrennt.
</translation>
    </message>
    <message>
        <source>sign in to the shop in the browser</source>
        <translation>im Browser beim Shop anmelden</translation>
    </message>
    <message>
        <source>Signs in to the shop: approve this computer in the browser with the code it
prints. Waits until the sign-in is done and your packs are loaded.
</source>
        <translation>Meldet Sie beim Shop an: Bestätigen Sie diesen Rechner im Browser mit dem
ausgegebenen Code. Wartet, bis die Anmeldung abgeschlossen ist und Ihre Pakete
geladen sind.
</translation>
    </message>
    <message>
        <source>sign this computer out of the shop</source>
        <translation>diesen Rechner vom Shop abmelden</translation>
    </message>
    <message>
        <source>Signs this computer out of the shop.
</source>
        <translation>Meldet diesen Rechner vom Shop ab.
</translation>
    </message>
    <message>
        <source>check the shop for new packs and files</source>
        <translation>im Shop nach neuen Paketen und Dateien suchen</translation>
    </message>
    <message>
        <source>Checks the shop for new packs and files, and waits for the answer.
</source>
        <translation>Sucht im Shop nach neuen Paketen und Dateien und wartet auf die Antwort.
</translation>
    </message>
    <message>
        <source>print the sign-in and library state</source>
        <translation>den Stand der Anmeldung und der Bibliothek ausgeben</translation>
    </message>
    <message>
        <source>Prints the sign-in state (signedOut, requesting, waiting, failed or signedIn),
the code to approve and its page while waiting, why a sign-in failed, and
the library&apos;s state (loading, ready or failed), one &quot;Name: value&quot; a line.
</source>
        <translation>Gibt den Stand der Anmeldung aus (signedOut, requesting, waiting, failed oder
signedIn), während des Wartens den zu bestätigenden Code und seine Seite, warum
eine Anmeldung fehlschlug, und den Stand der Bibliothek (loading, ready oder
failed), je Zeile ein „Name: Wert“.
</translation>
    </message>
    <message>
        <source>See &apos;%1&apos;.</source>
        <translation>Siehe „%1“.</translation>
    </message>
    <message>
        <source>%1 needs a value</source>
        <translation>%1 braucht einen Wert</translation>
    </message>
    <message>
        <source>give --on or --off, not both</source>
        <translation>geben Sie --on oder --off an, nicht beides</translation>
    </message>
    <message>
        <source>unknown option %1</source>
        <translation>unbekannte Option %1</translation>
    </message>
    <message>
        <source>name a wallpaper as PACK/COLOURWAY</source>
        <translation>geben Sie ein Hintergrundbild als PACK/COLOURWAY an</translation>
    </message>
    <message>
        <source>one wallpaper at a time</source>
        <translation>nur ein Hintergrundbild auf einmal</translation>
    </message>
    <message>
        <source>--edition needs a wallpaper</source>
        <translation>--edition braucht ein Hintergrundbild</translation>
    </message>
    <message>
        <source>give --on or --off</source>
        <translation>geben Sie --on oder --off an</translation>
    </message>
    <message>
        <source>unexpected argument %1</source>
        <translation>unerwartetes Argument %1</translation>
    </message>
    <message>
        <source>name a command</source>
        <translation>geben Sie einen Befehl an</translation>
    </message>
    <message>
        <source>&apos;%1&apos; isn&apos;t a command</source>
        <translation>„%1“ ist kein Befehl</translation>
    </message>
    <message>
        <source>Usage: quennetctl COMMAND [ARGUMENTS]

Controls Quennet over the session bus, starting it when it isn&apos;t running.

Commands:
</source>
        <translation>Aufruf: quennetctl BEFEHL [ARGUMENTE]

Steuert Quennet über den Sitzungsbus und startet es, falls es nicht läuft.

Befehle:
</translation>
    </message>
    <message>
        <source>
Options:
  -h, --help        this help, or a command&apos;s help after the command
  --version         Quennet&apos;s version

A wallpaper is named PACK/COLOURWAY, as &apos;quennetctl find&apos; lists them.
Exit status: 0 when done; 1 when it failed, with the reason on standard error;
2 when the command line is wrong.
</source>
        <translation>
Optionen:
  -h, --help        diese Hilfe, nach einem Befehl dessen Hilfe
  --version         die Version von Quennet

Ein Hintergrundbild heißt PACK/COLOURWAY, so wie „quennetctl find“ es auflistet.
Rückgabewert: 0 bei Erfolg; 1 bei einem Fehler, mit dem Grund in der
Standardfehlerausgabe; 2 bei einer falschen Befehlszeile.
</translation>
    </message>
    <message>
        <source>Usage: quennetctl %1%2</source>
        <translation>Aufruf: quennetctl %1%2</translation>
    </message>
</context>
<context>
    <name>Defaults</name>
    <message>
        <source>Couldn&apos;t save your settings. Check that your disk has room and try again.</source>
        <translation>Ihre Einstellungen konnten nicht gespeichert werden. Prüfen Sie, ob auf dem Datenträger genug Platz ist, und versuchen Sie es erneut.</translation>
    </message>
</context>
<context>
    <name>DesktopError</name>
    <message>
        <source>Your desktop settings have no wallpaper settings.</source>
        <translation>Die Einstellungen Ihrer Arbeitsumgebung enthalten keine Einstellungen für Hintergrundbilder.</translation>
    </message>
    <message>
        <source>The picture for all displays could not be written.</source>
        <translation>Das Bild für alle Bildschirme konnte nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>Your desktop settings did not keep the picture.</source>
        <translation>Die Einstellungen Ihrer Arbeitsumgebung haben das Bild nicht übernommen.</translation>
    </message>
    <message>
        <source>Cannot reach %1: nothing answers at %2.</source>
        <translation>%1 ist nicht erreichbar: Unter %2 antwortet nichts.</translation>
    </message>
    <message>
        <source>The desktop portal refused the picture: %1</source>
        <translation>Das Desktop-Portal hat das Bild abgelehnt: %1</translation>
    </message>
    <message>
        <source>Your desktop did not answer about the picture.</source>
        <translation>Ihre Arbeitsumgebung hat auf das Bild nicht geantwortet.</translation>
    </message>
    <message>
        <source>Your desktop did not take the picture.</source>
        <translation>Ihre Arbeitsumgebung hat das Bild nicht übernommen.</translation>
    </message>
</context>
<context>
    <name>DesktopPictures</name>
    <message>
        <source>This wallpaper could not be prepared for your desktop.</source>
        <translation>Dieses Hintergrundbild konnte nicht für Ihre Arbeitsumgebung vorbereitet werden.</translation>
    </message>
</context>
<context>
    <name>DisplayId</name>
    <message>
        <source>Built-in display</source>
        <translation>Eingebauter Bildschirm</translation>
    </message>
</context>
<context>
    <name>DisplayListModel</name>
    <message>
        <source>%1 · %2</source>
        <translation>%1 · %2</translation>
    </message>
    <message>
        <source>Not from your packs</source>
        <translation>Nicht aus Ihren Paketen</translation>
    </message>
</context>
<context>
    <name>EditionChoice</name>
    <message>
        <source>Automatic</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>Time of day</source>
        <translation>Tageszeit</translation>
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
        <source>Edition</source>
        <translation>Ausführung</translation>
    </message>
</context>
<context>
    <name>FileError</name>
    <message>
        <source>The folder could not be created.</source>
        <translation>Der Ordner konnte nicht angelegt werden.</translation>
    </message>
    <message>
        <source>It could not be written.</source>
        <translation>Schreiben nicht möglich.</translation>
    </message>
    <message>
        <source>Couldn&apos;t write %1: %2</source>
        <translation>%1 konnte nicht geschrieben werden: %2</translation>
    </message>
</context>
<context>
    <name>FileFetcher</name>
    <message>
        <source>The shop replied %1.</source>
        <translation>Der Shop hat mit %1 geantwortet.</translation>
    </message>
    <message>
        <source>The download link had expired.</source>
        <translation>Der Download-Link war abgelaufen.</translation>
    </message>
    <message>
        <source>The download didn&apos;t match the shop&apos;s copy. Try again.</source>
        <translation>Der Download stimmte nicht mit der Kopie des Shops überein. Versuchen Sie es erneut.</translation>
    </message>
</context>
<context>
    <name>FocusFilter</name>
    <message>
        <source>No wallpaper</source>
        <translation>Kein Hintergrundbild</translation>
    </message>
</context>
<context>
    <name>FocusWallpaper</name>
    <message>
        <source>That wallpaper isn&apos;t in your packs.</source>
        <translation>Dieses Hintergrundbild ist nicht in Ihren Paketen.</translation>
    </message>
    <message>
        <source>The picture “%1” is no longer there.</source>
        <translation>Das Bild „%1“ ist nicht mehr vorhanden.</translation>
    </message>
</context>
<context>
    <name>Intents</name>
    <message>
        <source>Still starting. Try again in a moment.</source>
        <translation>Wird noch gestartet. Versuchen Sie es gleich noch einmal.</translation>
    </message>
    <message>
        <source>That wallpaper isn&apos;t in your packs.</source>
        <translation>Dieses Hintergrundbild ist nicht in Ihren Paketen.</translation>
    </message>
    <message>
        <source>The main display isn&apos;t showing one of your wallpapers.</source>
        <translation>Der Hauptbildschirm zeigt keines Ihrer Hintergrundbilder.</translation>
    </message>
    <message>
        <source>Another wallpaper was set while this one downloaded.</source>
        <translation>Während des Herunterladens wurde ein anderes Hintergrundbild gesetzt.</translation>
    </message>
</context>
<context>
    <name>Keychain</name>
    <message>
        <source>The desktop&apos;s secret store is locked or refused access.</source>
        <translation>Der Passwortspeicher der Arbeitsumgebung ist gesperrt oder verweigert den Zugriff.</translation>
    </message>
</context>
<context>
    <name>LoginItem</name>
    <message>
        <source>Wallpaper packs from the shop, on every display</source>
        <translation>Hintergrundbild-Pakete aus dem Shop, auf jedem Bildschirm</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>&amp;Quennet</source>
        <translation>&amp;Quennet</translation>
    </message>
    <message>
        <source>About Quennet</source>
        <translation>Über Quennet</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen&#xa0;…</translation>
    </message>
    <message>
        <source>Check for New Files</source>
        <translation>Nach neuen Dateien suchen</translation>
    </message>
    <message>
        <source>Sign Out</source>
        <translation>Abmelden</translation>
    </message>
    <message>
        <source>Close Window</source>
        <translation>Fenster schließen</translation>
    </message>
    <message>
        <source>Quit Quennet</source>
        <translation>Quennet beenden</translation>
    </message>
    <message>
        <source>Loading your packs…</source>
        <translation>Ihre Pakete werden geladen&#xa0;…</translation>
    </message>
    <message>
        <source>Can&apos;t reach the shop</source>
        <translation>Der Shop ist nicht erreichbar</translation>
    </message>
    <message>
        <source>Check your connection and try again.</source>
        <translation>Prüfen Sie Ihre Verbindung und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Favourites</source>
        <translation>Favoriten</translation>
    </message>
    <message>
        <source>The colourways with a heart, for you and for Shuffle.</source>
        <translation>Die Farbvarianten mit Herz, für Sie und für den Zufallswechsel.</translation>
    </message>
    <message>
        <source>View in Shop</source>
        <translation>Im Shop ansehen</translation>
    </message>
    <message>
        <source>Save Desktop Files to Downloads</source>
        <translation>Desktop-Dateien unter Downloads speichern</translation>
    </message>
    <message>
        <source>A click on a colourway sets it on %1. Choose another display above.</source>
        <translation>Ein Klick auf eine Farbvariante setzt sie auf %1. Wählen Sie oben einen anderen Bildschirm.</translation>
    </message>
    <message>
        <source>Set on All Displays</source>
        <translation>Auf allen Bildschirmen setzen</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Edition</source>
        <translation>Ausführung</translation>
    </message>
    <message numerus="yes">
        <source>%n colourway(s)</source>
        <translation>
            <numerusform>%n Farbvariante</numerusform>
            <numerusform>%n Farbvarianten</numerusform>
        </translation>
    </message>
    <message>
        <source>Add favourites with the heart on a colourway.</source>
        <translation>Fügen Sie Favoriten mit dem Herz auf einer Farbvariante hinzu.</translation>
    </message>
    <message>
        <source>This pack has no colourways yet.</source>
        <translation>Dieses Paket hat noch keine Farbvarianten.</translation>
    </message>
    <message>
        <source>Through the day: %1</source>
        <translation>Im Lauf des Tages: %1</translation>
    </message>
    <message>
        <source>Remove from Favourites</source>
        <translation>Aus Favoriten entfernen</translation>
    </message>
    <message>
        <source>Add to Favourites</source>
        <translation>Zu Favoriten hinzufügen</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>Time of day</source>
        <translation>Tageszeit</translation>
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
        <source>Packs</source>
        <translation>Pakete</translation>
    </message>
    <message>
        <source>Colourways</source>
        <translation>Farbvarianten</translation>
    </message>
    <message numerus="yes">
        <source>%n new</source>
        <translation>
            <numerusform>%n neu</numerusform>
            <numerusform>%n neu</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>NetworkError</name>
    <message>
        <source>Nothing arrived for 60 seconds.</source>
        <translation>60 Sekunden lang ist nichts angekommen.</translation>
    </message>
    <message>
        <source>The shop sent more than %1 MB at once, more than Quennet reads.</source>
        <translation>Der Shop hat mehr als %1 MB auf einmal gesendet, mehr als Quennet liest.</translation>
    </message>
</context>
<context>
    <name>NoticePresenter</name>
    <message>
        <source>Downloading</source>
        <translation>Wird heruntergeladen</translation>
    </message>
    <message numerus="yes">
        <source>Downloading %Ln files</source>
        <translation>
            <numerusform>%Ln Datei wird heruntergeladen</numerusform>
            <numerusform>%Ln Dateien werden heruntergeladen</numerusform>
        </translation>
    </message>
    <message>
        <source>Saved %1 to Downloads</source>
        <translation>%1 unter Downloads gespeichert</translation>
    </message>
</context>
<context>
    <name>NoticeView</name>
    <message>
        <source>Show in Folder</source>
        <translation>Im Ordner anzeigen</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>Option</name>
    <message>
        <source>How Often</source>
        <translation>Wie oft</translation>
    </message>
    <message>
        <source>Every hour</source>
        <translation>Jede Stunde</translation>
    </message>
    <message>
        <source>Every 6 hours</source>
        <translation>Alle 6 Stunden</translation>
    </message>
    <message>
        <source>Every day</source>
        <translation>Jeden Tag</translation>
    </message>
    <message>
        <source>Every week</source>
        <translation>Jede Woche</translation>
    </message>
    <message>
        <source>Shuffle From</source>
        <translation>Wechseln aus</translation>
    </message>
    <message>
        <source>All your packs</source>
        <translation>Alle Ihre Pakete</translation>
    </message>
    <message>
        <source>Favourites</source>
        <translation>Favoriten</translation>
    </message>
    <message>
        <source>Edition</source>
        <translation>Ausführung</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>Time of day</source>
        <translation>Tageszeit</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
</context>
<context>
    <name>PackListModel</name>
    <message>
        <source>Your Packs</source>
        <translation>Ihre Pakete</translation>
    </message>
    <message>
        <source>In the Shop</source>
        <translation>Im Shop</translation>
    </message>
</context>
<context>
    <name>Panel</name>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Put back what the displays showed before</source>
        <translation>Wiederherstellen, was die Bildschirme vorher zeigten</translation>
    </message>
    <message>
        <source>Check for New Files</source>
        <translation>Nach neuen Dateien suchen</translation>
    </message>
    <message>
        <source>Loading your packs…</source>
        <translation>Ihre Pakete werden geladen&#xa0;…</translation>
    </message>
    <message>
        <source>Sign in to use your packs</source>
        <translation>Melden Sie sich an, um Ihre Pakete zu verwenden</translation>
    </message>
    <message>
        <source>Can&apos;t reach the shop</source>
        <translation>Der Shop ist nicht erreichbar</translation>
    </message>
    <message>
        <source>Check your connection and try again.</source>
        <translation>Prüfen Sie Ihre Verbindung und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Choosing for %1</source>
        <translation>Auswahl für %1</translation>
    </message>
    <message>
        <source>Set on All Displays</source>
        <translation>Auf allen Bildschirmen setzen</translation>
    </message>
    <message>
        <source>Favourites</source>
        <translation>Favoriten</translation>
    </message>
    <message>
        <source>Pack</source>
        <translation>Paket</translation>
    </message>
    <message>
        <source>Add favourites with the heart on a colourway.</source>
        <translation>Fügen Sie Favoriten mit dem Herz auf einer Farbvariante hinzu.</translation>
    </message>
    <message>
        <source>This pack has no colourways yet.</source>
        <translation>Dieses Paket hat noch keine Farbvarianten.</translation>
    </message>
    <message>
        <source>Open Quennet</source>
        <translation>Quennet öffnen</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen&#xa0;…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Remove from Favourites</source>
        <translation>Aus Favoriten entfernen</translation>
    </message>
    <message>
        <source>Add to Favourites</source>
        <translation>Zu Favoriten hinzufügen</translation>
    </message>
    <message>
        <source>Colourways</source>
        <translation>Farbvarianten</translation>
    </message>
</context>
<context>
    <name>SettingsWindow</name>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>Konto</translation>
    </message>
    <message>
        <source>Storage</source>
        <translation>Speicher</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>Quennet Settings</source>
        <translation>Quennet-Einstellungen</translation>
    </message>
    <message>
        <source>Open at login</source>
        <translation>Bei der Anmeldung öffnen</translation>
    </message>
    <message>
        <source>Starts in the tray, so Shuffle and Do Not Disturb wallpapers keep working.</source>
        <translation>Startet im Systemabschnitt, damit Zufallswechsel und „Nicht stören“-Hintergrundbilder weiter funktionieren.</translation>
    </message>
    <message>
        <source>Shuffle</source>
        <translation>Zufallswechsel</translation>
    </message>
    <message>
        <source>Shuffle wallpapers</source>
        <translation>Hintergrundbilder zufällig wechseln</translation>
    </message>
    <message>
        <source>How often</source>
        <translation>Wie oft</translation>
    </message>
    <message>
        <source>Shuffle from</source>
        <translation>Wechseln aus</translation>
    </message>
    <message>
        <source>Different wallpaper on each display</source>
        <translation>Anderes Hintergrundbild auf jedem Bildschirm</translation>
    </message>
    <message>
        <source>Do Not Disturb</source>
        <translation>Nicht stören</translation>
    </message>
    <message>
        <source>No wallpaper</source>
        <translation>Kein Hintergrundbild</translation>
    </message>
    <message>
        <source>%1 – %2</source>
        <translation>%1 – %2</translation>
    </message>
    <message>
        <source>Wallpaper</source>
        <translation>Hintergrundbild</translation>
    </message>
    <message>
        <source>Do Not Disturb wallpaper</source>
        <translation>Hintergrundbild für „Nicht stören“</translation>
    </message>
    <message>
        <source>Edition</source>
        <translation>Ausführung</translation>
    </message>
    <message>
        <source>Do Not Disturb wallpaper edition</source>
        <translation>Ausführung des Hintergrundbilds für „Nicht stören“</translation>
    </message>
    <message>
        <source>Do Not Disturb is on now: %1.</source>
        <translation>„Nicht stören“ ist jetzt aktiv: %1.</translation>
    </message>
    <message>
        <source>While Do Not Disturb is on, every display shows this wallpaper. Your own come back when it ends.</source>
        <translation>Solange „Nicht stören“ aktiv ist, zeigt jeder Bildschirm dieses Hintergrundbild. Ihre eigenen kehren danach zurück.</translation>
    </message>
    <message>
        <source>Workspaces</source>
        <translation>Arbeitsflächen</translation>
    </message>
    <message>
        <source>Use on all workspaces</source>
        <translation>Auf allen Arbeitsflächen verwenden</translation>
    </message>
    <message>
        <source>Keeps the wallpaper you set here on every workspace. Turn this off to choose a different one for each workspace in your desktop settings.</source>
        <translation>Behält das hier gesetzte Hintergrundbild auf jeder Arbeitsfläche bei. Schalten Sie dies aus, um in den Einstellungen Ihrer Arbeitsumgebung für jede Arbeitsfläche ein anderes zu wählen.</translation>
    </message>
    <message>
        <source>Your desktop needs your permission to start the workspace helper at login. Allow it in your desktop settings.</source>
        <translation>Ihre Arbeitsumgebung braucht Ihre Erlaubnis, um den Arbeitsflächen-Helfer bei der Anmeldung zu starten. Erlauben Sie es in den Einstellungen Ihrer Arbeitsumgebung.</translation>
    </message>
    <message>
        <source>Email</source>
        <translation>E-Mail</translation>
    </message>
    <message>
        <source>Signed in</source>
        <translation>Angemeldet</translation>
    </message>
    <message>
        <source>Your packs come from the shop account with this email address.</source>
        <translation>Ihre Pakete stammen aus dem Shop-Konto mit dieser E-Mail-Adresse.</translation>
    </message>
    <message>
        <source>Sign Out</source>
        <translation>Abmelden</translation>
    </message>
    <message>
        <source>Downloaded wallpapers</source>
        <translation>Heruntergeladene Hintergrundbilder</translation>
    </message>
    <message>
        <source>Remove Downloads</source>
        <translation>Downloads entfernen</translation>
    </message>
    <message>
        <source>Available once downloads finish</source>
        <translation>Verfügbar, sobald die Downloads fertig sind</translation>
    </message>
    <message>
        <source>Wallpapers on your displays are kept. Anything removed downloads again when you set it.</source>
        <translation>Hintergrundbilder auf Ihren Bildschirmen bleiben erhalten. Alles Entfernte wird erneut heruntergeladen, wenn Sie es setzen.</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>The wallpaper packs you bought in the Quennet shop, on every display.</source>
        <translation>Die im Quennet-Shop gekauften Hintergrundbild-Pakete, auf jedem Bildschirm.</translation>
    </message>
    <message>
        <source>Acknowledgements</source>
        <translation>Danksagungen</translation>
    </message>
    <message>
        <source>Show what&apos;s new after updates</source>
        <translation>Nach Aktualisierungen die Neuerungen zeigen</translation>
    </message>
    <message>
        <source>Play feedback sounds</source>
        <translation>Rückmeldeklänge abspielen</translation>
    </message>
    <message>
        <source>A sound when a wallpaper is set, when setting one fails and when you sign in, if your desktop&apos;s event sounds are on.</source>
        <translation>Ein Klang, wenn ein Hintergrundbild gesetzt wird, wenn das Setzen fehlschlägt und wenn Sie sich anmelden – sofern die Ereignisklänge Ihrer Arbeitsumgebung eingeschaltet sind.</translation>
    </message>
    <message>
        <source>What&apos;s New</source>
        <translation>Neuerungen</translation>
    </message>
    <message>
        <source>Show Welcome</source>
        <translation>Begrüßung zeigen</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
</context>
<context>
    <name>Shop</name>
    <message>
        <source>It isn&apos;t available to set yet.</source>
        <translation>Es kann noch nicht gesetzt werden.</translation>
    </message>
    <message>
        <source>That wallpaper isn&apos;t in your packs.</source>
        <translation>Dieses Hintergrundbild ist nicht in Ihren Paketen.</translation>
    </message>
    <message>
        <source>Couldn&apos;t check for new files. %1</source>
        <translation>Suche nach neuen Dateien fehlgeschlagen. %1</translation>
    </message>
    <message>
        <source>Couldn&apos;t save %1 to Downloads. %2</source>
        <translation>%1 konnte nicht unter Downloads gespeichert werden. %2</translation>
    </message>
</context>
<context>
    <name>Shuffle</name>
    <message>
        <source>Add favourites to shuffle from them.</source>
        <translation>Fügen Sie Favoriten hinzu, um aus ihnen zu wechseln.</translation>
    </message>
    <message>
        <source>There&apos;s nothing of yours to shuffle yet.</source>
        <translation>Es gibt noch nichts von Ihnen zum Wechseln.</translation>
    </message>
    <message>
        <source>Paused while you use a wallpaper chosen in your desktop settings.</source>
        <translation>Pausiert, solange Sie ein in den Einstellungen Ihrer Arbeitsumgebung gewähltes Hintergrundbild verwenden.</translation>
    </message>
    <message>
        <source>Waiting while your Do Not Disturb wallpaper is on.</source>
        <translation>Wartet, solange Ihr Hintergrundbild für „Nicht stören“ aktiv ist.</translation>
    </message>
    <message>
        <source>Add favourites with the heart on a colourway to shuffle from them.</source>
        <translation>Fügen Sie Favoriten mit dem Herz auf einer Farbvariante hinzu, um aus ihnen zu wechseln.</translation>
    </message>
</context>
<context>
    <name>ShuffleBlock</name>
    <message>
        <source>Shuffle</source>
        <translation>Zufallswechsel</translation>
    </message>
    <message>
        <source>Shuffle Now</source>
        <translation>Jetzt wechseln</translation>
    </message>
    <message>
        <source>Shuffling…</source>
        <translation>Wird gewechselt&#xa0;…</translation>
    </message>
    <message>
        <source>Up next: %1</source>
        <translation>Als Nächstes: %1</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
</context>
<context>
    <name>ShuffleView</name>
    <message>
        <source>today at %1</source>
        <translation>heute um %1</translation>
    </message>
    <message>
        <source>tomorrow at %1</source>
        <translation>morgen um %1</translation>
    </message>
    <message>
        <source>%1 at %2</source>
        <translation>%1 um %2</translation>
    </message>
    <message>
        <source>Every hour</source>
        <translation>Jede Stunde</translation>
    </message>
    <message>
        <source>Every 6 hours</source>
        <translation>Alle 6 Stunden</translation>
    </message>
    <message>
        <source>Every day</source>
        <translation>Jeden Tag</translation>
    </message>
    <message>
        <source>Every week</source>
        <translation>Jede Woche</translation>
    </message>
    <message>
        <source>All your packs</source>
        <translation>Alle Ihre Pakete</translation>
    </message>
    <message>
        <source>Favourites</source>
        <translation>Favoriten</translation>
    </message>
    <message>
        <source>Next shuffle %1</source>
        <translation>Nächster Wechsel %1</translation>
    </message>
    <message>
        <source>%1 from your favourites</source>
        <translation>%1 aus Ihren Favoriten</translation>
    </message>
    <message>
        <source>%1 from all your packs</source>
        <translation>%1 aus allen Ihren Paketen</translation>
    </message>
</context>
<context>
    <name>SignInSheet</name>
    <message>
        <source>Approve this computer in your browser</source>
        <translation>Bestätigen Sie diesen Rechner in Ihrem Browser</translation>
    </message>
    <message>
        <source>Sign in to use the packs you&apos;ve bought</source>
        <translation>Melden Sie sich an, um Ihre gekauften Pakete zu verwenden</translation>
    </message>
    <message>
        <source>With the email address you bought them with.</source>
        <translation>Mit der E-Mail-Adresse, mit der Sie sie gekauft haben.</translation>
    </message>
    <message>
        <source>Check the code there matches this one.</source>
        <translation>Prüfen Sie, ob der Code dort mit diesem übereinstimmt.</translation>
    </message>
    <message>
        <source>Waiting for approval…</source>
        <translation>Warten auf Bestätigung&#xa0;…</translation>
    </message>
    <message>
        <source>Sign In…</source>
        <translation>Anmelden&#xa0;…</translation>
    </message>
    <message>
        <source>Open Browser Again</source>
        <translation>Browser erneut öffnen</translation>
    </message>
    <message>
        <source>Start Again</source>
        <translation>Von vorn beginnen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>SpacesHelper</name>
    <message>
        <source>Quennet workspace helper</source>
        <translation>Quennet-Arbeitsflächen-Helfer</translation>
    </message>
    <message>
        <source>Keeps the wallpaper you set in Quennet on every workspace</source>
        <translation>Behält das in Quennet gesetzte Hintergrundbild auf jeder Arbeitsfläche bei</translation>
    </message>
</context>
<context>
    <name>StatusItemController</name>
    <message>
        <source>Open Quennet</source>
        <translation>Quennet öffnen</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen&#xa0;…</translation>
    </message>
    <message>
        <source>Quit Quennet</source>
        <translation>Quennet beenden</translation>
    </message>
    <message>
        <source>Quennet Panel</source>
        <translation>Quennet-Leiste</translation>
    </message>
</context>
<context>
    <name>Transfers</name>
    <message>
        <source>Couldn&apos;t download %1. %2</source>
        <translation>%1 konnte nicht heruntergeladen werden. %2</translation>
    </message>
</context>
<context>
    <name>WelcomeWindow</name>
    <message>
        <source>Welcome to Quennet</source>
        <translation>Willkommen bei Quennet</translation>
    </message>
    <message>
        <source>Quennet puts the wallpaper packs you bought in the Quennet shop on your desktop: on one display or on all of them, in light and dark, changing through the day or shuffled on a schedule.</source>
        <translation>Quennet bringt die Hintergrundbild-Pakete, die Sie im Quennet-Shop gekauft haben, auf Ihren Bildschirm: auf einen Bildschirm oder auf alle, hell und dunkel, im Lauf des Tages wechselnd oder nach Zeitplan gemischt.</translation>
    </message>
    <message>
        <source>It lives in the tray. Click its icon to choose a wallpaper; right-click it for the menu. Closing a window leaves Quennet running there.</source>
        <translation>Quennet lebt im Systemabschnitt. Klicken Sie auf das Symbol, um ein Hintergrundbild zu wählen; ein Rechtsklick öffnet das Menü. Wenn Sie ein Fenster schließen, läuft Quennet dort weiter.</translation>
    </message>
    <message>
        <source>If your desktop has no tray, open Quennet from your apps.</source>
        <translation>Hat Ihre Arbeitsumgebung keinen Systemabschnitt, öffnen Sie Quennet über Ihre Anwendungen.</translation>
    </message>
    <message>
        <source>Sign In…</source>
        <translation>Anmelden&#xa0;…</translation>
    </message>
    <message>
        <source>Open Quennet</source>
        <translation>Quennet öffnen</translation>
    </message>
</context>
<context>
    <name>WhatsNewWindow</name>
    <message>
        <source>What&apos;s New in Quennet</source>
        <translation>Neuerungen in Quennet</translation>
    </message>
    <message>
        <source>What&apos;s New</source>
        <translation>Neuerungen</translation>
    </message>
    <message>
        <source>Changes</source>
        <translation>Änderungen</translation>
    </message>
    <message>
        <source>Show what&apos;s new after updates</source>
        <translation>Nach Aktualisierungen die Neuerungen zeigen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Started at login: stay in the tray.</source>
        <translation>Bei der Anmeldung gestartet: im Systemabschnitt bleiben.</translation>
    </message>
    <message>
        <source>Started by a call on the session bus: stay in the tray.</source>
        <translation>Durch einen Aufruf auf dem Sitzungsbus gestartet: im Systemabschnitt bleiben.</translation>
    </message>
    <message>
        <source>Load every view hidden, then quit.</source>
        <translation>Jede Ansicht verborgen laden, dann beenden.</translation>
    </message>
    <message>
        <source>Open the settings.</source>
        <translation>Die Einstellungen öffnen.</translation>
    </message>
    <message>
        <source>Quennet runs in a desktop session, and this one has no display.</source>
        <translation>Quennet läuft in einer Desktop-Sitzung, und diese hat keine Anzeige.</translation>
    </message>
</context>
</TS>
