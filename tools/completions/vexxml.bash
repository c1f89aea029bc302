# Completion of vexxml in bash. Where nothing else fits, files are offered.

_vexxml() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local commands="format validate dtd query tree stat edit diff"
    local common="-h --help --version --trusted --limit"
    local limits="totalBytes elementDepth nodes attributesPerElement nameLength valueLength
        textLength entityGrowth declarations declarationBytes groupDepth validationSteps"
    local command="" options="" i
    COMPREPLY=()

    for ((i = 1; i < COMP_CWORD; ++i)); do
        [[ ${COMP_WORDS[i]} == -* ]] || { command=${COMP_WORDS[i]}; break; }
    done
    case $command in
        format) options="-o --output --in-place --no-short-tags" ;;
        validate) options="--dtd --quiet" ;;
        dtd) ;;
        query) options="--count --node --value -0" ;;
        tree) options="--depth --color" ;;
        stat) options="--top --all" ;;
        edit)
            options="--set-text --set-attribute --remove-attribute --rename --add --delete
                -o --output --in-place"
            ;;
        diff) options="--quiet" ;;
        "")
            mapfile -t COMPREPLY < <(compgen -W "$commands -h --help --version" -- "$current")
            return
            ;;
        *) return ;;
    esac

    case $previous in
        --limit)
            mapfile -t COMPREPLY < <(compgen -S = -W "$limits" -- "$current")
            compopt -o nospace 2>/dev/null
            return
            ;;
        --color)
            mapfile -t COMPREPLY < <(compgen -W "auto always never" -- "$current")
            return
            ;;
        -o | --output | --dtd | --depth | --top | --set-text | --set-attribute | --remove-attribute | \
            --rename | --add) return ;;
    esac
    [[ $current != -* ]] ||
        mapfile -t COMPREPLY < <(compgen -W "$options $common" -- "$current")
}

complete -o bashdefault -o default -F _vexxml vexxml
