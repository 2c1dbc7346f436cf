# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# Completion of vandrel-cli in Bash 4.4 or later.

# Splits a command line as Bash does, but not at colons. Expands nothing: names of devices are not
# to be trusted. Sets the caller's words, the quote that is open in the last one, and the beginning
# of the last word that Readline keeps.
_vandrel_cli_split() {
    local line=$1 word='' character keptBefore=''
    local -i i inWord=0
    words=() quote='' kept=''
    for ((i = 0; i < ${#line}; ++i)); do
        character=${line:i:1}
        if [[ $character == \\ && ($quote == '' || $quote$character${line:i+1:1} == \"\\[\"\\\$\`]) ]]; then
            i+=1
            word+=${line:i:1}
            inWord=1
        elif [[ -n $quote && $character == "$quote" ]]; then
            quote=''
            kept=$keptBefore
        elif [[ -n $quote ]]; then
            word+=$character
        elif [[ $character == [\"\'] ]]; then
            quote=$character
            keptBefore=$kept
            kept=$word
            inWord=1
        elif [[ $character == [[:space:]\<\>] ]]; then
            ((inWord)) && words+=("$word")
            [[ $character == [\<\>] ]] && words+=("$character")
            word='' kept='' inWord=0
        else
            word+=$character
            inWord=1
            [[ $COMP_WORDBREAKS == *"$character"* ]] && kept=$word
        fi
    done
    words+=("$word")
}

_vandrel_cli_quoted() {
    local text=$1
    case $quote in
    \')
        printf '%s\n' "${text//\'/"'\\''"}"
        ;;
    \")
        text=${text//\\/\\\\}
        text=${text//\"/\\\"}
        text=${text//\$/\\\$}
        printf '%s\n' "${text//\`/\\\`}"
        ;;
    *)
        [[ -z $text ]] && return
        printf -v text '%q' "$text"
        printf '%s\n' "${text//\\,/,}" # a comma alone is not special
        ;;
    esac
}

_vandrel_cli() {
    local -a words candidates
    local quote kept candidate
    COMPREPLY=()
    _vandrel_cli_split "${COMP_LINE:0:COMP_POINT}"
    if [[ ${#words[@]} -gt 2 && ${words[-2]} == [\<\>] ]]; then
        compopt -o default 2>/dev/null
        return
    fi
    mapfile -t candidates < <("${words[0]/#\~\//$HOME/}" --complete "${words[@]:1}" 2>/dev/null)
    for candidate in "${candidates[@]}"; do
        if [[ $candidate == @files ]]; then
            compopt -o default 2>/dev/null
        elif [[ $candidate == @folders ]]; then
            compopt -o dirnames 2>/dev/null
        elif [[ -n $candidate && $candidate == "${words[-1]}"* ]]; then
            [[ $candidate == *[/:,] ]] && compopt -o nospace 2>/dev/null
            COMPREPLY+=("$(_vandrel_cli_quoted "${candidate:${#kept}}")")
        fi
    done
}

complete -F _vandrel_cli vandrel-cli
