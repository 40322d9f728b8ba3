# bash completion for quennetctl                                  -*- shell-script -*-

# Wallpaper keys come from a Quennet that is running already: completing never starts it.
_quennetctl_wallpapers()
{
    dbus-send --session --print-reply --dest=org.freedesktop.DBus /org/freedesktop/DBus \
        org.freedesktop.DBus.NameHasOwner string:app.quennet.Quennet 2>/dev/null \
        | grep -q 'boolean true' || return
    quennetctl find 2>/dev/null | cut -f1
}

_quennetctl()
{
    local cur prev words cword
    _init_completion || return

    local commands="shuffle set get favourite shuffle-settings focus-filter find sign-in sign-out refresh status"
    if ((cword == 1)); then
        COMPREPLY=($(compgen -W "$commands --help --version" -- "$cur"))
        return
    fi

    case $prev in
        --edition)
            COMPREPLY=($(compgen -W "automatic timeOfDay light dark" -- "$cur"))
            return
            ;;
        --interval)
            COMPREPLY=($(compgen -W "hour sixHours day week" -- "$cur"))
            return
            ;;
        --source)
            COMPREPLY=($(compgen -W "all favourites" -- "$cur"))
            return
            ;;
    esac

    case ${words[1]} in
        set | focus-filter)
            if [[ $cur == -* ]]; then
                COMPREPLY=($(compgen -W "--edition --help" -- "$cur"))
            else
                COMPREPLY=($(compgen -W "$(_quennetctl_wallpapers)" -- "$cur"))
            fi
            ;;
        shuffle-settings)
            local option used=
            for option in "${words[@]:2}"; do
                [[ $option == --on || $option == --off ]] && used=1
            done
            if [[ $used ]]; then
                COMPREPLY=($(compgen -W "--interval --source --help" -- "$cur"))
            else
                COMPREPLY=($(compgen -W "--on --off --interval --source --help" -- "$cur"))
            fi
            ;;
        *)
            COMPREPLY=($(compgen -W "--help" -- "$cur"))
            ;;
    esac
} &&
    complete -F _quennetctl quennetctl

# ex: filetype=sh
