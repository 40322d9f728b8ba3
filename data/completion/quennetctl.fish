# fish completion for quennetctl

# Wallpaper keys come from a Quennet that is running already: completing never starts it.
function __quennetctl_wallpapers
    dbus-send --session --print-reply --dest=org.freedesktop.DBus /org/freedesktop/DBus \
        org.freedesktop.DBus.NameHasOwner string:app.quennet.Quennet 2>/dev/null \
        | string match -q '*boolean true*'
    or return
    quennetctl find 2>/dev/null | string split -f1 \t
end

# The shuffle is turned on or off once per command line.
function __quennetctl_switch_unused
    not __fish_seen_argument -l on -l off
end

set -l commands shuffle set get favourite shuffle-settings focus-filter find sign-in sign-out refresh status

complete -c quennetctl -f
complete -c quennetctl -s h -l help -d 'Show the help'
complete -c quennetctl -n "not __fish_seen_subcommand_from $commands" -l version -d "Quennet's version"

complete -c quennetctl -n "not __fish_seen_subcommand_from $commands" -a shuffle -d 'Change the wallpaper now'
complete -c quennetctl -n "not __fish_seen_subcommand_from $commands" -a set -d 'Set a wallpaper on all displays'
complete -c quennetctl -n "not __fish_seen_subcommand_from $commands" -a get -d "Print the main display's wallpaper"
complete -c quennetctl -n "not __fish_seen_subcommand_from $commands" -a favourite -d "Make the main display's wallpaper a favourite"
complete -c quennetctl -n "not __fish_seen_subcommand_from $commands" -a shuffle-settings -d 'Turn the shuffle on or off, and say how'
complete -c quennetctl -n "not __fish_seen_subcommand_from $commands" -a focus-filter -d 'Choose the wallpaper for Do Not Disturb'
complete -c quennetctl -n "not __fish_seen_subcommand_from $commands" -a find -d 'List your wallpapers'
complete -c quennetctl -n "not __fish_seen_subcommand_from $commands" -a sign-in -d 'Sign in to the shop in the browser'
complete -c quennetctl -n "not __fish_seen_subcommand_from $commands" -a sign-out -d 'Sign this computer out of the shop'
complete -c quennetctl -n "not __fish_seen_subcommand_from $commands" -a refresh -d 'Check the shop for new packs and files'
complete -c quennetctl -n "not __fish_seen_subcommand_from $commands" -a status -d 'Print the sign-in and library state'

complete -c quennetctl -n '__fish_seen_subcommand_from set focus-filter' -a '(__quennetctl_wallpapers)'
complete -c quennetctl -n '__fish_seen_subcommand_from set focus-filter' -l edition -x \
    -a 'automatic timeOfDay light dark' -d 'Which of its pictures'

complete -c quennetctl -n '__fish_seen_subcommand_from shuffle-settings; and __quennetctl_switch_unused' -l on -d 'Turn the shuffle on'
complete -c quennetctl -n '__fish_seen_subcommand_from shuffle-settings; and __quennetctl_switch_unused' -l off -d 'Turn the shuffle off'
complete -c quennetctl -n '__fish_seen_subcommand_from shuffle-settings' -l interval -x \
    -a 'hour sixHours day week' -d 'How often'
complete -c quennetctl -n '__fish_seen_subcommand_from shuffle-settings' -l source -x \
    -a 'all favourites' -d 'From which wallpapers'
