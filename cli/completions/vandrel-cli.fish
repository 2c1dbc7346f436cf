# SPDX-License-Identifier: Apache-2.0
# Completion of vandrel-cli in fish.

function __vandrel_cli_complete
    set -l words (commandline -opc)
    set -l current (commandline -ct | string unescape)
    set -l candidates (command $words[1] --complete $words[2..-1] "$current" 2>/dev/null)
    # fish writes no space after "/", ":" and ",", and quotes what is special.
    for candidate in $candidates
        switch $candidate
            case @files
                __fish_complete_path $current
            case @folders
                __fish_complete_directories $current
            case '?*'
                printf '%s\n' $candidate
        end
    end
end

complete -c vandrel-cli -f -a '(__vandrel_cli_complete)'
