# Completion for the command vidtips in bash, with or without the package bash-completion. What there is to complete is
# asked of the tool itself, so that whatever its help names is completed.

# _vidtips_section SECTION COMMAND…: the lines of a section of the command's help, without their indentation.
_vidtips_section() {
    "${@:2}" --help 2>/dev/null | sed -n "/^$1\$/,/^[A-Z]/s/^    //p"
}

_vidtips_command_names() {
    _vidtips_section COMMANDS "$1" | sed -nE 's/^([a-z]+) .*/\1/p'
}

_vidtips_option_names() {
    _vidtips_section OPTIONS "$@" | grep -oE '^(-[a-z], )?--[a-z-]+' | tr -d ','
}

# _vidtips_value_name OPTION COMMAND…: what the option takes, as the help calls it; nothing for one that takes nothing.
_vidtips_value_name() {
    _vidtips_section OPTIONS "${@:2}" | sed -nE "s/^(-[a-z], )?$1 ([^ ]+)\$/\\2/p"
}

# The packages that are named already, or those of this folder.
_vidtips_listing() {
    local word folders=()
    for word in "${words[@]}"; do
        if [[ -d $word ]]; then folders+=("$word"); fi
    done
    "$tool" keys "${folders[@]:-.}" 2>/dev/null
}

_vidtips_locales() {
    _vidtips_listing | cut -f 2 | grep -vxF '*'
    locale -a 2>/dev/null | sed -nE 's/^([a-z]{2,3}_[A-Z]{2}).*/\1/p'
    echo en_US
}

# _vidtips_values NAME WORD: what may stand for a placeholder of the help and begins with the word.
_vidtips_values() {
    local words_of=
    case $1 in
    FOLDER | DIR | PACKAGE) compgen -d -- "$2" ;;
    FILE) compgen -f -- "$2" ;;
    COMMAND) compgen -c -- "$2" | sort -u ;;
    LOCALE) words_of=$(_vidtips_locales) ;;
    KEY) words_of=$(_vidtips_listing | cut -f 1) ;;
    CODE) words_of=$("$tool" explain 2>/dev/null | grep -oE '^VT[0-9]+') ;;
    SHARED) words_of=$(compgen -d -X '!*.vidtips' | sed -E 's,.*/,,; s/\.vidtips$//') ;;
    tip) words_of=tip ;;
    esac
    [[ -z $words_of ]] || printf '%s\n' "$words_of" | sort -u | start=$2 awk 'index($0, ENVIRON["start"]) == 1'
}

# Sets `words` to what follows the command's name, without options and their values, and `value_name` to what the word
# that is being written stands for, if that is the value of an option.
_vidtips_read_line() {
    local i word option=
    words=() value_name=
    for ((i = 2; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        if [[ $word == '=' ]]; then continue; fi
        if [[ -n $option ]]; then
            option=
        elif [[ $word == -- ]]; then
            is_ended=1
        elif [[ $word == -* && $is_ended == 0 ]]; then
            option=$(_vidtips_value_name "$word" "$tool" "$command")
            value_name=$option
            continue
        else
            words+=("$word")
            # What follows the name of a program is the program's.
            if [[ $arguments == *COMMAND* ]]; then is_ended=1; fi
        fi
        value_name=
    done
}

_vidtips() {
    local tool=$1 word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]} arguments words value_name is_ended=0 name
    local candidates=()
    if [[ $word == '=' ]]; then word=; fi
    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W \
            "help $(_vidtips_command_names "$tool") $(_vidtips_option_names "$tool")" -- "$word")
        return
    fi
    if [[ $command == help ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$(_vidtips_command_names "$tool")" -- "$word")
        return
    fi
    arguments=$(_vidtips_section SYNOPSIS "$tool" "$command")
    _vidtips_read_line
    compopt -o filenames 2>/dev/null
    if [[ -n $value_name ]]; then
        mapfile -t COMPREPLY < <(_vidtips_values "$value_name" "$word")
    elif [[ $word == -* && $is_ended == 0 ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$(_vidtips_option_names "$tool" "$command")" -- "$word")
    elif [[ $arguments == *COMMAND* && ${#words[@]} -gt 0 ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    else
        for name in ${arguments//[^a-zA-Z]/ }; do
            mapfile -t candidates < <(_vidtips_values "$name" "$word")
            COMPREPLY+=("${candidates[@]}")
        done
    fi
}

complete -F _vidtips vidtips
