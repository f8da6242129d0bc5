# fish completion of tonaro
complete -c tonaro -f
complete -c tonaro -l set -x -d 'Start with that value' -a 'waveform=sine waveform=triangle waveform=square
    waveform=sawtooth start-frequency= use-end=0 use-end=1 end-frequency= log-sweep=0 log-sweep=1 gain= length=
    sample-rate= time-format='
complete -c tonaro -l device -x -d 'Play on that sound device' \
    -a '(tonaro --list-devices 2>/dev/null | string replace -r "  \([^(]*\)\$" "")'
complete -c tonaro -l list-devices -d 'Print the names of the sound devices'
complete -c tonaro -l mute -d 'Play without sound'
complete -c tonaro -l render -r -F -d 'Write the tone into a .wav or .flac file'
complete -c tonaro -l editors -x -d 'Open several windows'
complete -c tonaro -l scale -x -d 'Pixels per point' -a '1 1.25 1.5 2 3 4'
complete -c tonaro -l appearance -x -d 'Light or dark' -a 'auto light dark'
complete -c tonaro -l trace -d 'Print what reaches the generator'
complete -c tonaro -l screenshot -r -F -d 'Draw the window into a picture'
complete -c tonaro -l controls -d 'Print the controls as JSON'
complete -c tonaro -l demo -r -F -d 'Drag a slider without a display'
complete -c tonaro -l help -d 'Show a summary'
complete -c tonaro -l version -d 'Show the version'
