# What fish completes behind "tivelo"; put into ~/.config/fish/completions.
complete -c tivelo -o e -x -d 'Run a line'
complete -c tivelo -o f -r -F -d 'Run the lines of a file'
complete -c tivelo -o q -d 'Lines of standard input, without banner, prompt and echo'
complete -c tivelo -o p -x -a '0 1 2 3 4 5 6 7 8 9' -d 'Precision'
complete -c tivelo -l explain -d 'Messages although standard error is no terminal'
complete -c tivelo -l no-history -d 'Keep no history file'
complete -c tivelo -s h -l help -d 'Show the options'
complete -c tivelo -s V -l version -d 'Show name and version'
