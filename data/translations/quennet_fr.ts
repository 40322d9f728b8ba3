<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>APIClient</name>
    <message>
        <source>The shop replied %1 (%2).</source>
        <translation>La boutique a répondu %1 (%2).</translation>
    </message>
    <message>
        <source>The shop replied %1.</source>
        <translation>La boutique a répondu %1.</translation>
    </message>
    <message>
        <source>You&apos;ve been signed out.</source>
        <translation>Vous avez été déconnecté.</translation>
    </message>
    <message>
        <source>The shop is busy. Try again in a minute.</source>
        <translation>La boutique est occupée. Réessayez dans une minute.</translation>
    </message>
    <message>
        <source>The shop&apos;s address doesn&apos;t start with https://, so Quennet won&apos;t send it anything. Check the shopBaseURL setting.</source>
        <translation>L&apos;adresse de la boutique ne commence pas par https://, Quennet ne lui enverra donc rien. Vérifiez le paramètre shopBaseURL.</translation>
    </message>
    <message>
        <source>The shop sent something the app didn&apos;t understand.</source>
        <translation>La boutique a envoyé une réponse que l&apos;application n&apos;a pas comprise.</translation>
    </message>
</context>
<context>
    <name>Account</name>
    <message>
        <source>Couldn&apos;t sign out: the desktop&apos;s secret store is locked or refused access. Unlock it and try again.</source>
        <translation>Impossible de se déconnecter&#xa0;: le trousseau du bureau est verrouillé ou a refusé l&apos;accès. Déverrouillez-le et réessayez.</translation>
    </message>
    <message>
        <source>Sign-in was cancelled in the browser.</source>
        <translation>La connexion a été annulée dans le navigateur.</translation>
    </message>
    <message>
        <source>That code expired.</source>
        <translation>Ce code a expiré.</translation>
    </message>
    <message>
        <source>That code didn&apos;t work. Start again.</source>
        <translation>Ce code n&apos;a pas fonctionné. Recommencez.</translation>
    </message>
    <message>
        <source>Couldn&apos;t reach the shop. Check your connection and try again.</source>
        <translation>Impossible de joindre la boutique. Vérifiez votre connexion et réessayez.</translation>
    </message>
    <message>
        <source>Couldn&apos;t save your sign-in on this computer. Try again.</source>
        <translation>Impossible d&apos;enregistrer votre connexion sur cet ordinateur. Réessayez.</translation>
    </message>
</context>
<context>
    <name>AppDelegate</name>
    <message>
        <source>Shuffle couldn&apos;t change your wallpaper</source>
        <translation>L&apos;alternance aléatoire n&apos;a pas pu changer votre fond d&apos;écran</translation>
    </message>
    <message>
        <source>Shuffle Settings</source>
        <translation>Paramètres de l&apos;alternance</translation>
    </message>
    <message>
        <source>Couldn&apos;t set the Do Not Disturb wallpaper</source>
        <translation>Impossible d&apos;appliquer le fond d&apos;écran «&#xa0;Ne pas déranger&#xa0;»</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Paramètres</translation>
    </message>
    <message>
        <source>You&apos;ve been signed out</source>
        <translation>Vous avez été déconnecté</translation>
    </message>
    <message>
        <source>Sign in again to use your packs.</source>
        <translation>Reconnectez-vous pour utiliser vos packs.</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Se connecter</translation>
    </message>
    <message>
        <source>Quennet is running</source>
        <translation>Quennet est lancé</translation>
    </message>
    <message>
        <source>This desktop has no tray for its icon. Open Quennet from your apps to use it.</source>
        <translation>Ce bureau n&apos;a pas de zone de notification pour son icône. Ouvrez Quennet depuis vos applications pour l&apos;utiliser.</translation>
    </message>
    <message>
        <source>Open Quennet</source>
        <translation>Ouvrir Quennet</translation>
    </message>
    <message>
        <source>windows, views, networking and D-Bus</source>
        <translation>fenêtres, vues, réseau et D-Bus</translation>
    </message>
    <message>
        <source>coroutines over Qt</source>
        <translation>coroutines pour Qt</translation>
    </message>
    <message>
        <source>the desktop&apos;s secret store</source>
        <translation>le trousseau du bureau</translation>
    </message>
    <message>
        <source>reading HEIC wallpapers</source>
        <translation>lecture des fonds d&apos;écran HEIC</translation>
    </message>
    <message>
        <source>decoding HEVC pictures</source>
        <translation>décodage des images HEVC</translation>
    </message>
    <message>
        <source>wallpaper metadata</source>
        <translation>métadonnées des fonds d&apos;écran</translation>
    </message>
    <message>
        <source>checking downloads (SHA-256)</source>
        <translation>vérification des téléchargements (SHA-256)</translation>
    </message>
    <message>
        <source>desktop settings (GSettings)</source>
        <translation>paramètres du bureau (GSettings)</translation>
    </message>
    <message>
        <source>the desktop&apos;s event sounds</source>
        <translation>les sons d&apos;événement du bureau</translation>
    </message>
    <message>
        <source>the panel on Wayland desktops</source>
        <translation>le panneau sur les bureaux Wayland</translation>
    </message>
    <message>
        <source>the desktop picture on X11</source>
        <translation>le fond d&apos;écran sous X11</translation>
    </message>
</context>
<context>
    <name>ArchiveSaver</name>
    <message>
        <source>The shop sent this archive without a checksum, so it wasn&apos;t saved. Try again later.</source>
        <translation>La boutique a envoyé cette archive sans somme de contrôle, elle n&apos;a donc pas été enregistrée. Réessayez plus tard.</translation>
    </message>
</context>
<context>
    <name>AutomationClient</name>
    <message>
        <source>Couldn&apos;t reach Quennet: %1</source>
        <translation>Impossible de joindre Quennet&#xa0;: %1</translation>
    </message>
    <message>
        <source>There&apos;s no session bus to reach Quennet on.</source>
        <translation>Aucun bus de session ne permet de joindre Quennet.</translation>
    </message>
    <message>
        <source>Approve this computer on the shop&apos;s website in your browser.</source>
        <translation>Approuvez cet ordinateur sur le site de la boutique dans votre navigateur.</translation>
    </message>
    <message>
        <source>Approve this computer in your browser: %1</source>
        <translation>Approuvez cet ordinateur dans votre navigateur&#xa0;: %1</translation>
    </message>
    <message>
        <source>Code: %1</source>
        <translation>Code&#xa0;: %1</translation>
    </message>
    <message>
        <source>Check the code there matches this one. Waiting for approval…</source>
        <translation>Vérifiez que le code affiché correspond à celui-ci. En attente d&apos;approbation…</translation>
    </message>
    <message>
        <source>Signed in.</source>
        <translation>Connecté.</translation>
    </message>
    <message>
        <source>Sign-in was cancelled.</source>
        <translation>La connexion a été annulée.</translation>
    </message>
    <message>
        <source>Quennet quit before the sign-in ended.</source>
        <translation>Quennet s&apos;est arrêté avant la fin de la connexion.</translation>
    </message>
</context>
<context>
    <name>AutomationService</name>
    <message>
        <source>%1 or %2</source>
        <translation>%1 ou %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; isn&apos;t an edition. Use %2.</source>
        <translation>«&#xa0;%1&#xa0;» n&apos;est pas une variante. Utilisez %2.</translation>
    </message>
    <message>
        <source>Name a wallpaper as pack/colourway.</source>
        <translation>Désignez un fond d&apos;écran sous la forme pack/coloris.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; isn&apos;t a wallpaper. Name one as pack/colourway.</source>
        <translation>«&#xa0;%1&#xa0;» n&apos;est pas un fond d&apos;écran. Désignez-en un sous la forme pack/coloris.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; isn&apos;t a shuffle interval. Use %2.</source>
        <translation>«&#xa0;%1&#xa0;» n&apos;est pas une fréquence d&apos;alternance. Utilisez %2.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; isn&apos;t a shuffle source. Use %2.</source>
        <translation>«&#xa0;%1&#xa0;» n&apos;est pas une source d&apos;alternance. Utilisez %2.</translation>
    </message>
</context>
<context>
    <name>AutostartEntry</name>
    <message>
        <source>Could not write %1.</source>
        <translation>Impossible d&apos;écrire %1.</translation>
    </message>
</context>
<context>
    <name>ColourwayTile</name>
    <message>
        <source>New</source>
        <translation>Nouveau</translation>
    </message>
    <message>
        <source>%1 from %2</source>
        <translation>%1 de %2</translation>
    </message>
    <message>
        <source>On a display</source>
        <translation>Sur un écran</translation>
    </message>
    <message>
        <source>Favourite</source>
        <translation>Favori</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>change the wallpaper now</source>
        <translation>changer de fond d&apos;écran maintenant</translation>
    </message>
    <message>
        <source>Changes the wallpaper now, as the shuffle&apos;s settings say.
</source>
        <translation>Change de fond d&apos;écran maintenant, selon les paramètres de l&apos;alternance.
</translation>
    </message>
    <message>
        <source>set a wallpaper on all displays</source>
        <translation>appliquer un fond d&apos;écran sur tous les écrans</translation>
    </message>
    <message>
        <source>Sets a wallpaper on all displays, downloading it first when needed.

Options:
  --edition EDITION   automatic (the default), timeOfDay, light or dark
</source>
        <translation>Applique un fond d&apos;écran sur tous les écrans, en le téléchargeant d&apos;abord si besoin.

Options&#xa0;:
  --edition EDITION   automatic (par défaut), timeOfDay, light ou dark
</translation>
    </message>
    <message>
        <source>print the main display&apos;s wallpaper</source>
        <translation>afficher le fond d&apos;écran de l&apos;écran principal</translation>
    </message>
    <message>
        <source>Prints the main display&apos;s wallpaper: PACK/COLOURWAY, its name and its pack&apos;s
name, separated by tabs.
</source>
        <translation>Affiche le fond d&apos;écran de l&apos;écran principal&#xa0;: PACK/COLOURWAY, son nom et le
nom de son pack, séparés par des tabulations.
</translation>
    </message>
    <message>
        <source>make the main display&apos;s wallpaper a favourite</source>
        <translation>ajouter le fond d&apos;écran de l&apos;écran principal aux favoris</translation>
    </message>
    <message>
        <source>Makes the main display&apos;s wallpaper a favourite. A favourite already stays
where it is: this never removes one.
</source>
        <translation>Ajoute le fond d&apos;écran de l&apos;écran principal aux favoris. Un favori existant
reste où il est&#xa0;: cette commande n&apos;en retire jamais.
</translation>
    </message>
    <message>
        <source>turn the shuffle on or off, and say how</source>
        <translation>activer ou désactiver l&apos;alternance, et la régler</translation>
    </message>
    <message>
        <source>Turns the shuffle on or off, and changes how often it shuffles and what from.

Options:
  --on, --off         shuffle, or stop shuffling
  --interval INTERVAL hour, sixHours, day or week; unchanged when left out
  --source SOURCE     all or favourites; unchanged when left out
</source>
        <translation>Active ou désactive l&apos;alternance, et change sa fréquence et sa source.

Options&#xa0;:
  --on, --off         alterner, ou arrêter d&apos;alterner
  --interval INTERVAL hour, sixHours, day ou week&#x202f;; inchangé si omis
  --source SOURCE     all ou favourites&#x202f;; inchangé si omis
</translation>
    </message>
    <message>
        <source>choose the wallpaper for Do Not Disturb</source>
        <translation>choisir le fond d&apos;écran pour «&#xa0;Ne pas déranger&#xa0;»</translation>
    </message>
    <message>
        <source>Chooses the wallpaper every display shows while Do Not Disturb is on; without
a wallpaper, none.

Options:
  --edition EDITION   automatic (the default), timeOfDay, light or dark
</source>
        <translation>Choisit le fond d&apos;écran que chaque écran affiche pendant «&#xa0;Ne pas déranger&#xa0;»&#x202f;;
sans fond d&apos;écran, aucun.

Options&#xa0;:
  --edition EDITION   automatic (par défaut), timeOfDay, light ou dark
</translation>
    </message>
    <message>
        <source>list your wallpapers</source>
        <translation>lister vos fonds d&apos;écran</translation>
    </message>
    <message>
        <source>Lists your wallpapers whose name or pack name holds every word of the text,
regardless of case; all of them without text. Favourites come first, newest
first, then the rest in library order. Each line is PACK/COLOURWAY, the
wallpaper&apos;s name and its pack&apos;s name, separated by tabs.
</source>
        <translation>Liste vos fonds d&apos;écran dont le nom ou le nom du pack contient chaque mot du
texte, sans tenir compte de la casse&#x202f;; tous sans texte. Les favoris d&apos;abord, les
plus récents en tête, puis le reste dans l&apos;ordre de la bibliothèque. Chaque
ligne donne PACK/COLOURWAY, le nom du fond d&apos;écran et le nom de son pack,
séparés par des tabulations.
</translation>
    </message>
    <message>
        <source>sign in to the shop in the browser</source>
        <translation>se connecter à la boutique dans le navigateur</translation>
    </message>
    <message>
        <source>Signs in to the shop: approve this computer in the browser with the code it
prints. Waits until the sign-in is done and your packs are loaded.
</source>
        <translation>Se connecte à la boutique&#xa0;: approuvez cet ordinateur dans le navigateur avec
le code affiché. Attend la fin de la connexion et le chargement de vos packs.
</translation>
    </message>
    <message>
        <source>sign this computer out of the shop</source>
        <translation>déconnecter cet ordinateur de la boutique</translation>
    </message>
    <message>
        <source>Signs this computer out of the shop.
</source>
        <translation>Déconnecte cet ordinateur de la boutique.
</translation>
    </message>
    <message>
        <source>check the shop for new packs and files</source>
        <translation>chercher de nouveaux packs et fichiers dans la boutique</translation>
    </message>
    <message>
        <source>Checks the shop for new packs and files, and waits for the answer.
</source>
        <translation>Cherche de nouveaux packs et fichiers dans la boutique, et attend la réponse.
</translation>
    </message>
    <message>
        <source>print the sign-in and library state</source>
        <translation>afficher l&apos;état de la connexion et de la bibliothèque</translation>
    </message>
    <message>
        <source>Prints the sign-in state (signedOut, requesting, waiting, failed or signedIn),
the code to approve and its page while waiting, why a sign-in failed, and
the library&apos;s state (loading, ready or failed), one &quot;Name: value&quot; a line.
</source>
        <translation>Affiche l&apos;état de la connexion (signedOut, requesting, waiting, failed ou
signedIn), le code à approuver et sa page pendant l&apos;attente, la raison d&apos;un
échec de connexion, et l&apos;état de la bibliothèque (loading, ready ou failed),
un «&#xa0;Nom: valeur&#xa0;» par ligne.
</translation>
    </message>
    <message>
        <source>See &apos;%1&apos;.</source>
        <translation>Voir «&#xa0;%1&#xa0;».</translation>
    </message>
    <message>
        <source>%1 needs a value</source>
        <translation>%1 attend une valeur</translation>
    </message>
    <message>
        <source>give --on or --off, not both</source>
        <translation>indiquez --on ou --off, pas les deux</translation>
    </message>
    <message>
        <source>unknown option %1</source>
        <translation>option inconnue %1</translation>
    </message>
    <message>
        <source>name a wallpaper as PACK/COLOURWAY</source>
        <translation>désignez un fond d&apos;écran sous la forme PACK/COLOURWAY</translation>
    </message>
    <message>
        <source>one wallpaper at a time</source>
        <translation>un seul fond d&apos;écran à la fois</translation>
    </message>
    <message>
        <source>--edition needs a wallpaper</source>
        <translation>--edition attend un fond d&apos;écran</translation>
    </message>
    <message>
        <source>give --on or --off</source>
        <translation>indiquez --on ou --off</translation>
    </message>
    <message>
        <source>unexpected argument %1</source>
        <translation>argument inattendu %1</translation>
    </message>
    <message>
        <source>name a command</source>
        <translation>indiquez une commande</translation>
    </message>
    <message>
        <source>&apos;%1&apos; isn&apos;t a command</source>
        <translation>«&#xa0;%1&#xa0;» n&apos;est pas une commande</translation>
    </message>
    <message>
        <source>Usage: quennetctl COMMAND [ARGUMENTS]

Controls Quennet over the session bus, starting it when it isn&apos;t running.

Commands:
</source>
        <translation>Utilisation&#xa0;: quennetctl COMMANDE [ARGUMENTS]

Pilote Quennet par le bus de session, en le lançant s&apos;il ne tourne pas.

Commandes&#xa0;:
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
Options&#xa0;:
  -h, --help        cette aide, ou l&apos;aide d&apos;une commande après la commande
  --version         la version de Quennet

Un fond d&apos;écran se désigne PACK/COLOURWAY, comme «&#xa0;quennetctl find&#xa0;» les liste.
Code de sortie&#xa0;: 0 en cas de succès&#x202f;; 1 en cas d&apos;échec, avec la raison sur la
sortie d&apos;erreur&#x202f;; 2 si la ligne de commande est incorrecte.
</translation>
    </message>
    <message>
        <source>Usage: quennetctl %1%2</source>
        <translation>Utilisation&#xa0;: quennetctl %1%2</translation>
    </message>
</context>
<context>
    <name>Defaults</name>
    <message>
        <source>Couldn&apos;t save your settings. Check that your disk has room and try again.</source>
        <translation>Impossible d&apos;enregistrer vos paramètres. Vérifiez qu&apos;il reste de la place sur votre disque et réessayez.</translation>
    </message>
</context>
<context>
    <name>DesktopError</name>
    <message>
        <source>Your desktop settings have no wallpaper settings.</source>
        <translation>Les paramètres de votre bureau ne comportent aucun réglage de fond d&apos;écran.</translation>
    </message>
    <message>
        <source>The picture for all displays could not be written.</source>
        <translation>L&apos;image pour tous les écrans n&apos;a pas pu être écrite.</translation>
    </message>
    <message>
        <source>Your desktop settings did not keep the picture.</source>
        <translation>Les paramètres de votre bureau n&apos;ont pas conservé l&apos;image.</translation>
    </message>
    <message>
        <source>Cannot reach %1: nothing answers at %2.</source>
        <translation>Impossible de joindre %1&#xa0;: rien ne répond à %2.</translation>
    </message>
    <message>
        <source>The desktop portal refused the picture: %1</source>
        <translation>Le portail du bureau a refusé l&apos;image&#xa0;: %1</translation>
    </message>
    <message>
        <source>Your desktop did not answer about the picture.</source>
        <translation>Votre bureau n&apos;a pas répondu au sujet de l&apos;image.</translation>
    </message>
    <message>
        <source>Your desktop did not take the picture.</source>
        <translation>Votre bureau n&apos;a pas accepté l&apos;image.</translation>
    </message>
</context>
<context>
    <name>DesktopPictures</name>
    <message>
        <source>This wallpaper could not be prepared for your desktop.</source>
        <translation>Ce fond d&apos;écran n&apos;a pas pu être préparé pour votre bureau.</translation>
    </message>
</context>
<context>
    <name>DisplayId</name>
    <message>
        <source>Built-in display</source>
        <translation>Écran intégré</translation>
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
        <translation>Hors de vos packs</translation>
    </message>
</context>
<context>
    <name>EditionChoice</name>
    <message>
        <source>Automatic</source>
        <translation>Automatique</translation>
    </message>
    <message>
        <source>Time of day</source>
        <translation>Selon l&apos;heure</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Clair</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Sombre</translation>
    </message>
    <message>
        <source>Edition</source>
        <translation>Variante</translation>
    </message>
</context>
<context>
    <name>FileError</name>
    <message>
        <source>The folder could not be created.</source>
        <translation>Le dossier n&apos;a pas pu être créé.</translation>
    </message>
    <message>
        <source>It could not be written.</source>
        <translation>L&apos;écriture a échoué.</translation>
    </message>
    <message>
        <source>Couldn&apos;t write %1: %2</source>
        <translation>Impossible d&apos;écrire %1&#xa0;: %2</translation>
    </message>
</context>
<context>
    <name>FileFetcher</name>
    <message>
        <source>The shop replied %1.</source>
        <translation>La boutique a répondu %1.</translation>
    </message>
    <message>
        <source>The download link had expired.</source>
        <translation>Le lien de téléchargement avait expiré.</translation>
    </message>
    <message>
        <source>The download didn&apos;t match the shop&apos;s copy. Try again.</source>
        <translation>Le téléchargement ne correspondait pas à la copie de la boutique. Réessayez.</translation>
    </message>
</context>
<context>
    <name>FocusFilter</name>
    <message>
        <source>No wallpaper</source>
        <translation>Aucun fond d&apos;écran</translation>
    </message>
</context>
<context>
    <name>FocusWallpaper</name>
    <message>
        <source>That wallpaper isn&apos;t in your packs.</source>
        <translation>Ce fond d&apos;écran n&apos;est pas dans vos packs.</translation>
    </message>
    <message>
        <source>The picture “%1” is no longer there.</source>
        <translation>L&apos;image «&#xa0;%1&#xa0;» n&apos;existe plus.</translation>
    </message>
</context>
<context>
    <name>Intents</name>
    <message>
        <source>Still starting. Try again in a moment.</source>
        <translation>Démarrage en cours. Réessayez dans un instant.</translation>
    </message>
    <message>
        <source>That wallpaper isn&apos;t in your packs.</source>
        <translation>Ce fond d&apos;écran n&apos;est pas dans vos packs.</translation>
    </message>
    <message>
        <source>The main display isn&apos;t showing one of your wallpapers.</source>
        <translation>L&apos;écran principal n&apos;affiche aucun de vos fonds d&apos;écran.</translation>
    </message>
    <message>
        <source>Another wallpaper was set while this one downloaded.</source>
        <translation>Un autre fond d&apos;écran a été appliqué pendant le téléchargement de celui-ci.</translation>
    </message>
</context>
<context>
    <name>Keychain</name>
    <message>
        <source>The desktop&apos;s secret store is locked or refused access.</source>
        <translation>Le trousseau du bureau est verrouillé ou a refusé l&apos;accès.</translation>
    </message>
</context>
<context>
    <name>LoginItem</name>
    <message>
        <source>Wallpaper packs from the shop, on every display</source>
        <translation>Les packs de fonds d&apos;écran de la boutique, sur chaque écran</translation>
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
        <translation>À propos de Quennet</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Paramètres…</translation>
    </message>
    <message>
        <source>Check for New Files</source>
        <translation>Rechercher de nouveaux fichiers</translation>
    </message>
    <message>
        <source>Sign Out</source>
        <translation>Se déconnecter</translation>
    </message>
    <message>
        <source>Close Window</source>
        <translation>Fermer la fenêtre</translation>
    </message>
    <message>
        <source>Quit Quennet</source>
        <translation>Quitter Quennet</translation>
    </message>
    <message>
        <source>Loading your packs…</source>
        <translation>Chargement de vos packs…</translation>
    </message>
    <message>
        <source>Can&apos;t reach the shop</source>
        <translation>Impossible de joindre la boutique</translation>
    </message>
    <message>
        <source>Check your connection and try again.</source>
        <translation>Vérifiez votre connexion et réessayez.</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>Favourites</source>
        <translation>Favoris</translation>
    </message>
    <message>
        <source>The colourways with a heart, for you and for Shuffle.</source>
        <translation>Les coloris marqués d&apos;un cœur, pour vous et pour l&apos;alternance.</translation>
    </message>
    <message>
        <source>View in Shop</source>
        <translation>Voir dans la boutique</translation>
    </message>
    <message>
        <source>Save Desktop Files to Downloads</source>
        <translation>Enregistrer les fichiers de bureau dans Téléchargements</translation>
    </message>
    <message>
        <source>A click on a colourway sets it on %1. Choose another display above.</source>
        <translation>Un clic sur un coloris l&apos;applique sur %1. Choisissez un autre écran ci-dessus.</translation>
    </message>
    <message>
        <source>Set on All Displays</source>
        <translation>Appliquer sur tous les écrans</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Edition</source>
        <translation>Variante</translation>
    </message>
    <message numerus="yes">
        <source>%n colourway(s)</source>
        <translation>
            <numerusform>%n coloris</numerusform>
            <numerusform>%n coloris</numerusform>
        </translation>
    </message>
    <message>
        <source>Add favourites with the heart on a colourway.</source>
        <translation>Ajoutez des favoris avec le cœur d&apos;un coloris.</translation>
    </message>
    <message>
        <source>This pack has no colourways yet.</source>
        <translation>Ce pack n&apos;a pas encore de coloris.</translation>
    </message>
    <message>
        <source>Through the day: %1</source>
        <translation>Au fil de la journée&#xa0;: %1</translation>
    </message>
    <message>
        <source>Remove from Favourites</source>
        <translation>Retirer des favoris</translation>
    </message>
    <message>
        <source>Add to Favourites</source>
        <translation>Ajouter aux favoris</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatique</translation>
    </message>
    <message>
        <source>Time of day</source>
        <translation>Selon l&apos;heure</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Clair</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Sombre</translation>
    </message>
    <message>
        <source>Packs</source>
        <translation>Packs</translation>
    </message>
    <message>
        <source>Colourways</source>
        <translation>Coloris</translation>
    </message>
    <message numerus="yes">
        <source>%n new</source>
        <translation>
            <numerusform>%n nouveau</numerusform>
            <numerusform>%n nouveaux</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>NetworkError</name>
    <message>
        <source>Nothing arrived for 60 seconds.</source>
        <translation>Rien n&apos;est arrivé pendant 60 secondes.</translation>
    </message>
    <message>
        <source>The shop sent more than %1 MB at once, more than Quennet reads.</source>
        <translation>La boutique a envoyé plus de %1&#xa0;Mo d&apos;un coup, plus que Quennet n&apos;en lit.</translation>
    </message>
</context>
<context>
    <name>NoticePresenter</name>
    <message>
        <source>Downloading</source>
        <translation>Téléchargement</translation>
    </message>
    <message numerus="yes">
        <source>Downloading %Ln files</source>
        <translation>
            <numerusform>Téléchargement de %Ln fichier</numerusform>
            <numerusform>Téléchargement de %Ln fichiers</numerusform>
        </translation>
    </message>
    <message>
        <source>Saved %1 to Downloads</source>
        <translation>%1 enregistré dans Téléchargements</translation>
    </message>
</context>
<context>
    <name>NoticeView</name>
    <message>
        <source>Show in Folder</source>
        <translation>Afficher dans le dossier</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>Option</name>
    <message>
        <source>How Often</source>
        <translation>Fréquence</translation>
    </message>
    <message>
        <source>Every hour</source>
        <translation>Toutes les heures</translation>
    </message>
    <message>
        <source>Every 6 hours</source>
        <translation>Toutes les 6 heures</translation>
    </message>
    <message>
        <source>Every day</source>
        <translation>Tous les jours</translation>
    </message>
    <message>
        <source>Every week</source>
        <translation>Toutes les semaines</translation>
    </message>
    <message>
        <source>Shuffle From</source>
        <translation>Alterner parmi</translation>
    </message>
    <message>
        <source>All your packs</source>
        <translation>Tous vos packs</translation>
    </message>
    <message>
        <source>Favourites</source>
        <translation>Favoris</translation>
    </message>
    <message>
        <source>Edition</source>
        <translation>Variante</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatique</translation>
    </message>
    <message>
        <source>Time of day</source>
        <translation>Selon l&apos;heure</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Clair</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Sombre</translation>
    </message>
</context>
<context>
    <name>PackListModel</name>
    <message>
        <source>Your Packs</source>
        <translation>Vos packs</translation>
    </message>
    <message>
        <source>In the Shop</source>
        <translation>Dans la boutique</translation>
    </message>
</context>
<context>
    <name>Panel</name>
    <message>
        <source>Back</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Put back what the displays showed before</source>
        <translation>Rétablir ce que les écrans affichaient avant</translation>
    </message>
    <message>
        <source>Check for New Files</source>
        <translation>Rechercher de nouveaux fichiers</translation>
    </message>
    <message>
        <source>Loading your packs…</source>
        <translation>Chargement de vos packs…</translation>
    </message>
    <message>
        <source>Sign in to use your packs</source>
        <translation>Connectez-vous pour utiliser vos packs</translation>
    </message>
    <message>
        <source>Can&apos;t reach the shop</source>
        <translation>Impossible de joindre la boutique</translation>
    </message>
    <message>
        <source>Check your connection and try again.</source>
        <translation>Vérifiez votre connexion et réessayez.</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>Choosing for %1</source>
        <translation>Choix pour %1</translation>
    </message>
    <message>
        <source>Set on All Displays</source>
        <translation>Appliquer sur tous les écrans</translation>
    </message>
    <message>
        <source>Favourites</source>
        <translation>Favoris</translation>
    </message>
    <message>
        <source>Pack</source>
        <translation>Pack</translation>
    </message>
    <message>
        <source>Add favourites with the heart on a colourway.</source>
        <translation>Ajoutez des favoris avec le cœur d&apos;un coloris.</translation>
    </message>
    <message>
        <source>This pack has no colourways yet.</source>
        <translation>Ce pack n&apos;a pas encore de coloris.</translation>
    </message>
    <message>
        <source>Open Quennet</source>
        <translation>Ouvrir Quennet</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Paramètres…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Remove from Favourites</source>
        <translation>Retirer des favoris</translation>
    </message>
    <message>
        <source>Add to Favourites</source>
        <translation>Ajouter aux favoris</translation>
    </message>
    <message>
        <source>Colourways</source>
        <translation>Coloris</translation>
    </message>
</context>
<context>
    <name>SettingsWindow</name>
    <message>
        <source>General</source>
        <translation>Général</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>Compte</translation>
    </message>
    <message>
        <source>Storage</source>
        <translation>Stockage</translation>
    </message>
    <message>
        <source>About</source>
        <translation>À propos</translation>
    </message>
    <message>
        <source>Quennet Settings</source>
        <translation>Paramètres de Quennet</translation>
    </message>
    <message>
        <source>Open at login</source>
        <translation>Ouvrir à la connexion</translation>
    </message>
    <message>
        <source>Starts in the tray, so Shuffle and Do Not Disturb wallpapers keep working.</source>
        <translation>Démarre dans la zone de notification, pour que l&apos;alternance et le fond d&apos;écran «&#xa0;Ne pas déranger&#xa0;» continuent de fonctionner.</translation>
    </message>
    <message>
        <source>Shuffle</source>
        <translation>Alternance</translation>
    </message>
    <message>
        <source>Shuffle wallpapers</source>
        <translation>Alterner les fonds d&apos;écran</translation>
    </message>
    <message>
        <source>How often</source>
        <translation>Fréquence</translation>
    </message>
    <message>
        <source>Shuffle from</source>
        <translation>Alterner parmi</translation>
    </message>
    <message>
        <source>Different wallpaper on each display</source>
        <translation>Un fond d&apos;écran différent sur chaque écran</translation>
    </message>
    <message>
        <source>Do Not Disturb</source>
        <translation>Ne pas déranger</translation>
    </message>
    <message>
        <source>No wallpaper</source>
        <translation>Aucun fond d&apos;écran</translation>
    </message>
    <message>
        <source>%1 – %2</source>
        <translation>%1 – %2</translation>
    </message>
    <message>
        <source>Wallpaper</source>
        <translation>Fond d&apos;écran</translation>
    </message>
    <message>
        <source>Do Not Disturb wallpaper</source>
        <translation>Fond d&apos;écran «&#xa0;Ne pas déranger&#xa0;»</translation>
    </message>
    <message>
        <source>Edition</source>
        <translation>Variante</translation>
    </message>
    <message>
        <source>Do Not Disturb wallpaper edition</source>
        <translation>Variante du fond d&apos;écran «&#xa0;Ne pas déranger&#xa0;»</translation>
    </message>
    <message>
        <source>Do Not Disturb is on now: %1.</source>
        <translation>«&#xa0;Ne pas déranger&#xa0;» est activé&#xa0;: %1.</translation>
    </message>
    <message>
        <source>While Do Not Disturb is on, every display shows this wallpaper. Your own come back when it ends.</source>
        <translation>Pendant «&#xa0;Ne pas déranger&#xa0;», chaque écran affiche ce fond d&apos;écran. Les vôtres reviennent ensuite.</translation>
    </message>
    <message>
        <source>Workspaces</source>
        <translation>Espaces de travail</translation>
    </message>
    <message>
        <source>Use on all workspaces</source>
        <translation>Utiliser sur tous les espaces de travail</translation>
    </message>
    <message>
        <source>Keeps the wallpaper you set here on every workspace. Turn this off to choose a different one for each workspace in your desktop settings.</source>
        <translation>Garde le fond d&apos;écran choisi ici sur chaque espace de travail. Désactivez cette option pour en choisir un différent par espace de travail dans les paramètres de votre bureau.</translation>
    </message>
    <message>
        <source>Your desktop needs your permission to start the workspace helper at login. Allow it in your desktop settings.</source>
        <translation>Votre bureau a besoin de votre autorisation pour lancer l&apos;assistant des espaces de travail à la connexion. Autorisez-le dans les paramètres de votre bureau.</translation>
    </message>
    <message>
        <source>Email</source>
        <translation>Adresse e-mail</translation>
    </message>
    <message>
        <source>Signed in</source>
        <translation>Connecté</translation>
    </message>
    <message>
        <source>Your packs come from the shop account with this email address.</source>
        <translation>Vos packs proviennent du compte de la boutique associé à cette adresse e-mail.</translation>
    </message>
    <message>
        <source>Sign Out</source>
        <translation>Se déconnecter</translation>
    </message>
    <message>
        <source>Downloaded wallpapers</source>
        <translation>Fonds d&apos;écran téléchargés</translation>
    </message>
    <message>
        <source>Remove Downloads</source>
        <translation>Supprimer les téléchargements</translation>
    </message>
    <message>
        <source>Available once downloads finish</source>
        <translation>Disponible une fois les téléchargements terminés</translation>
    </message>
    <message>
        <source>Wallpapers on your displays are kept. Anything removed downloads again when you set it.</source>
        <translation>Les fonds d&apos;écran affichés sont conservés. Ce qui est supprimé sera retéléchargé quand vous l&apos;appliquerez.</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>The wallpaper packs you bought in the Quennet shop, on every display.</source>
        <translation>Les packs de fonds d&apos;écran achetés dans la boutique Quennet, sur chaque écran.</translation>
    </message>
    <message>
        <source>Acknowledgements</source>
        <translation>Remerciements</translation>
    </message>
    <message>
        <source>Show what&apos;s new after updates</source>
        <translation>Montrer les nouveautés après une mise à jour</translation>
    </message>
    <message>
        <source>Play feedback sounds</source>
        <translation>Jouer des sons de confirmation</translation>
    </message>
    <message>
        <source>A sound when a wallpaper is set, when setting one fails and when you sign in, if your desktop&apos;s event sounds are on.</source>
        <translation>Un son quand un fond d&apos;écran est appliqué, quand l&apos;application échoue et quand vous vous connectez, si les sons d&apos;événement de votre bureau sont activés.</translation>
    </message>
    <message>
        <source>What&apos;s New</source>
        <translation>Nouveautés</translation>
    </message>
    <message>
        <source>Show Welcome</source>
        <translation>Afficher l&apos;accueil</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Paramètres</translation>
    </message>
</context>
<context>
    <name>Shop</name>
    <message>
        <source>It isn&apos;t available to set yet.</source>
        <translation>Il n&apos;est pas encore possible de l&apos;appliquer.</translation>
    </message>
    <message>
        <source>That wallpaper isn&apos;t in your packs.</source>
        <translation>Ce fond d&apos;écran n&apos;est pas dans vos packs.</translation>
    </message>
    <message>
        <source>Couldn&apos;t check for new files. %1</source>
        <translation>Impossible de rechercher de nouveaux fichiers. %1</translation>
    </message>
    <message>
        <source>Couldn&apos;t save %1 to Downloads. %2</source>
        <translation>Impossible d&apos;enregistrer %1 dans Téléchargements. %2</translation>
    </message>
</context>
<context>
    <name>Shuffle</name>
    <message>
        <source>Add favourites to shuffle from them.</source>
        <translation>Ajoutez des favoris pour alterner parmi eux.</translation>
    </message>
    <message>
        <source>There&apos;s nothing of yours to shuffle yet.</source>
        <translation>Vous n&apos;avez encore rien à alterner.</translation>
    </message>
    <message>
        <source>Paused while you use a wallpaper chosen in your desktop settings.</source>
        <translation>En pause tant que vous utilisez un fond d&apos;écran choisi dans les paramètres de votre bureau.</translation>
    </message>
    <message>
        <source>Waiting while your Do Not Disturb wallpaper is on.</source>
        <translation>En attente tant que votre fond d&apos;écran «&#xa0;Ne pas déranger&#xa0;» est affiché.</translation>
    </message>
    <message>
        <source>Add favourites with the heart on a colourway to shuffle from them.</source>
        <translation>Ajoutez des favoris avec le cœur d&apos;un coloris pour alterner parmi eux.</translation>
    </message>
</context>
<context>
    <name>ShuffleBlock</name>
    <message>
        <source>Shuffle</source>
        <translation>Alternance</translation>
    </message>
    <message>
        <source>Shuffle Now</source>
        <translation>Changer maintenant</translation>
    </message>
    <message>
        <source>Shuffling…</source>
        <translation>Changement en cours…</translation>
    </message>
    <message>
        <source>Up next: %1</source>
        <translation>À suivre&#xa0;: %1</translation>
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
        <translation>aujourd&apos;hui à %1</translation>
    </message>
    <message>
        <source>tomorrow at %1</source>
        <translation>demain à %1</translation>
    </message>
    <message>
        <source>%1 at %2</source>
        <translation>%1 à %2</translation>
    </message>
    <message>
        <source>Every hour</source>
        <translation>Toutes les heures</translation>
    </message>
    <message>
        <source>Every 6 hours</source>
        <translation>Toutes les 6 heures</translation>
    </message>
    <message>
        <source>Every day</source>
        <translation>Tous les jours</translation>
    </message>
    <message>
        <source>Every week</source>
        <translation>Toutes les semaines</translation>
    </message>
    <message>
        <source>All your packs</source>
        <translation>Tous vos packs</translation>
    </message>
    <message>
        <source>Favourites</source>
        <translation>Favoris</translation>
    </message>
    <message>
        <source>Next shuffle %1</source>
        <translation>Prochain changement %1</translation>
    </message>
    <message>
        <source>%1 from your favourites</source>
        <translation>%1 parmi vos favoris</translation>
    </message>
    <message>
        <source>%1 from all your packs</source>
        <translation>%1 parmi tous vos packs</translation>
    </message>
</context>
<context>
    <name>SignInSheet</name>
    <message>
        <source>Approve this computer in your browser</source>
        <translation>Approuvez cet ordinateur dans votre navigateur</translation>
    </message>
    <message>
        <source>Sign in to use the packs you&apos;ve bought</source>
        <translation>Connectez-vous pour utiliser les packs que vous avez achetés</translation>
    </message>
    <message>
        <source>With the email address you bought them with.</source>
        <translation>Avec l&apos;adresse e-mail utilisée pour vos achats.</translation>
    </message>
    <message>
        <source>Check the code there matches this one.</source>
        <translation>Vérifiez que le code affiché correspond à celui-ci.</translation>
    </message>
    <message>
        <source>Waiting for approval…</source>
        <translation>En attente d&apos;approbation…</translation>
    </message>
    <message>
        <source>Sign In…</source>
        <translation>Se connecter…</translation>
    </message>
    <message>
        <source>Open Browser Again</source>
        <translation>Rouvrir le navigateur</translation>
    </message>
    <message>
        <source>Start Again</source>
        <translation>Recommencer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>SpacesHelper</name>
    <message>
        <source>Quennet workspace helper</source>
        <translation>Assistant des espaces de travail de Quennet</translation>
    </message>
    <message>
        <source>Keeps the wallpaper you set in Quennet on every workspace</source>
        <translation>Garde le fond d&apos;écran choisi dans Quennet sur chaque espace de travail</translation>
    </message>
</context>
<context>
    <name>StatusItemController</name>
    <message>
        <source>Open Quennet</source>
        <translation>Ouvrir Quennet</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Paramètres…</translation>
    </message>
    <message>
        <source>Quit Quennet</source>
        <translation>Quitter Quennet</translation>
    </message>
    <message>
        <source>Quennet Panel</source>
        <translation>Panneau Quennet</translation>
    </message>
</context>
<context>
    <name>Transfers</name>
    <message>
        <source>Couldn&apos;t download %1. %2</source>
        <translation>Impossible de télécharger %1. %2</translation>
    </message>
</context>
<context>
    <name>WelcomeWindow</name>
    <message>
        <source>Welcome to Quennet</source>
        <translation>Bienvenue dans Quennet</translation>
    </message>
    <message>
        <source>Quennet puts the wallpaper packs you bought in the Quennet shop on your desktop: on one display or on all of them, in light and dark, changing through the day or shuffled on a schedule.</source>
        <translation>Quennet met sur votre bureau les packs de fonds d&apos;écran achetés dans la boutique Quennet&#xa0;: sur un écran ou sur tous, en clair et en sombre, changeant au fil de la journée ou au hasard selon un horaire.</translation>
    </message>
    <message>
        <source>It lives in the tray. Click its icon to choose a wallpaper; right-click it for the menu. Closing a window leaves Quennet running there.</source>
        <translation>Quennet se trouve dans la zone de notification. Cliquez sur son icône pour choisir un fond d&apos;écran, ou faites un clic droit pour ouvrir le menu. Fermer une fenêtre laisse Quennet tourner à cet endroit.</translation>
    </message>
    <message>
        <source>If your desktop has no tray, open Quennet from your apps.</source>
        <translation>Si votre bureau n&apos;a pas de zone de notification, ouvrez Quennet depuis vos applications.</translation>
    </message>
    <message>
        <source>Sign In…</source>
        <translation>Se connecter…</translation>
    </message>
    <message>
        <source>Open Quennet</source>
        <translation>Ouvrir Quennet</translation>
    </message>
</context>
<context>
    <name>WhatsNewWindow</name>
    <message>
        <source>What&apos;s New in Quennet</source>
        <translation>Nouveautés de Quennet</translation>
    </message>
    <message>
        <source>What&apos;s New</source>
        <translation>Nouveautés</translation>
    </message>
    <message>
        <source>Changes</source>
        <translation>Modifications</translation>
    </message>
    <message>
        <source>Show what&apos;s new after updates</source>
        <translation>Montrer les nouveautés après une mise à jour</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Started at login: stay in the tray.</source>
        <translation>Lancé à la connexion&#xa0;: rester dans la zone de notification.</translation>
    </message>
    <message>
        <source>Started by a call on the session bus: stay in the tray.</source>
        <translation>Lancé par un appel sur le bus de session&#xa0;: rester dans la zone de notification.</translation>
    </message>
    <message>
        <source>Load every view hidden, then quit.</source>
        <translation>Charger chaque vue masquée, puis quitter.</translation>
    </message>
    <message>
        <source>Open the settings.</source>
        <translation>Ouvrir les paramètres.</translation>
    </message>
    <message>
        <source>Quennet runs in a desktop session, and this one has no display.</source>
        <translation>Quennet fonctionne dans une session de bureau, et celle-ci n&apos;a pas d&apos;affichage.</translation>
    </message>
</context>
</TS>
