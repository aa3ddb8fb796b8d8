What is not taken, and why.

  $ . "$TESTDIR/begin"

Plug-ins:

  $ for name in emptypromise nofunctions nullanswer wrongmagic; do
  >   ln -s "$TEST_PLUGINS$name.so" "$name.so"
  >   host info --plugin "$name.so"
  > done
  ! mirelon-host: emptypromise.so: the plug-in's effect record lacks the double-precision function that it promises
  ! mirelon-host: nofunctions.so: the plug-in's effect record lacks a function
  ! mirelon-host: nullanswer.so: the plug-in made no instance
  ! mirelon-host: wrongmagic.so: the plug-in's effect record has a wrong magic word
  [2]
  $ echo text >text.so
  $ host info --plugin text.so
  ! mirelon-host: text.so: not a plug-in (text.so: file too short)
  [2]
  $ cp noentry.so noentry.clap
  $ host info --plugin noentry.clap
  ! mirelon-host: noentry.clap: not a CLAP plug-in (it exports no clap_entry)
  [2]
  $ echo text >text.clap
  $ host info --plugin text.clap
  ! mirelon-host: text.clap: not a plug-in (text.clap: file too short)
  [2]
  $ mkdir folder.clap folder.so
  $ host info --plugin folder.clap
  ! mirelon-host: folder.clap: a folder, but no LV2 bundle (it has no manifest.ttl)
  [2]
  $ host info --plugin folder.so
  ! mirelon-host: folder.so: a folder, but no LV2 bundle (it has no manifest.ttl)
  [2]
  $ host info --plugin missing.clap
  ! mirelon-host: missing.clap: no such plug-in file
  [2]
  $ mkdir empty.lv2
  $ host info --plugin empty.lv2
  ! mirelon-host: empty.lv2: a folder, but no LV2 bundle (it has no manifest.ttl)
  [2]
  $ echo '<urn:a> a <urn:b> .' >empty.lv2/manifest.ttl
  $ host info --plugin empty.lv2
  ! mirelon-host: empty.lv2: its manifest.ttl names no plug-in
  [2]
  $ for name in a b; do
  >   echo "<urn:$name> a <http://lv2plug.in/ns/lv2core#Plugin> ; <http://lv2plug.in/ns/lv2core#binary> <x.so> ."
  > done >empty.lv2/manifest.ttl
  $ host info --plugin empty.lv2
  ! mirelon-host: empty.lv2: several plug-ins; name one by its URI: urn:a, urn:b
  [2]
  $ host info --plugin urn:mirelon:nowhere
  ! mirelon-host: urn:mirelon:nowhere: no LV2 plug-in of this name in ~/.lv2, the system's folders or where LV2_PATH says
  [2]
  $ host chunk save state --plugin displays.so
  ! mirelon-host: the plug-in keeps no state chunk
  [2]
  $ host bank save bank.dvb --plugin displays.so
  ! mirelon-host: the plug-in keeps no bank of presets in its state
  [2]
  $ host render tones.wav out.wav --plugin displays.so --double
  ! mirelon-host: displays.so: does not process in double precision
  [2]
  $ host render tones.wav out.wav --plugin displays.so --preset 1
  ! mirelon-host: the plug-in has no presets
  [2]
  $ host render tones.wav out.wav --preset ""
  ! mirelon-host: a preset goes by its number or its name, not by ""
  [2]
  $ host screenshot picture.png --plugin displays.so
  ! mirelon-host: the plug-in has no editor
  [2]
  $ DISPLAY= host screenshot picture.png
  ! mirelon-host: there is no X display to open a window on (DISPLAY)
  [2]
  $ changed() {
  >   rm -rf changed.lv2; cp -rL amplifier.lv2 changed.lv2; sed -i "$1" changed.lv2/*.ttl
  >   host info --plugin changed.lv2
  > }
  $ changed 's/requiredFeature urid:map/requiredFeature urid:map , <urn:nowhere>/'
  ! mirelon-host: urn:mirelon:test:amplifier: needs what is not offered here: urn:nowhere
  [2]
  $ changed '0,/lv2:InputPort , lv2:ControlPort/s//lv2:InputPort , <urn:kind>/'
  ! mirelon-host: urn:mirelon:test:amplifier: its port factor is of a kind that is not hosted here
  [2]
  $ changed 's/amplifier.so/other.so/'
  ! lilv_lib_open(): error: Failed to open library changed.lv2/other.so (changed.lv2/other.so: cannot open shared object file: No such file or directory)
  ! mirelon-host: urn:mirelon:test:amplifier: the plug-in made no instance
  [2]

Files:

  $ host compare - - <tones.wav
  ! mirelon-host: standard input cannot be both
  [2]
  $ host compare - tones.wav <tones.wav
  - and tones.wav: identical
  $ host compare - tones.wav <text.so
  ! mirelon-host: standard input: not an audio file (Format not recognised)
  [2]
  $ host compare - tones.wav </dev/null
  ! mirelon-host: standard input: not an audio file (Format not recognised)
  [2]
  $ host compare folder.so tones.wav
  ! mirelon-host: folder.so: cannot be read (it is not a regular file)
  [2]
  $ host render tones.wav a.wav b.wav
  ! mirelon-host: one IN and one OUT, or any number of IN with --out-dir (--help shows how)
  [2]
  $ host render tones.wav out.wav --format text
  ! mirelon-host: --format: text not in {wav,flac,ogg,oga,opus,aiff,aif,aifc,caf,w64,rf64,au,snd,mp3} (--help shows how)
  [2]
  $ host render tones.wav - --format caf | od -A d -c | head -n 1
  0000000   c   a   f   f  \0 001  \0  \0   d   e   s   c  \0  \0  \0  \0
  $ host render tones.wav - --format ogg >out.ogg
  $ cat tones.wav | host render - - --format w64 >out.w64
  $ cat tones.wav | host render - out.wav --automate gain=0:1
  input     - (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    out.wav (WAV, Signed 16 bit PCM)
  settings  gain 1.00 dB from 0.00
  frames    6000 (0.14 s)
  speed     N x real time
  
    dBFS     L peak     L RMS     R peak     R RMS    width  balance   correl
    before    -11.21    -14.22     -13.39    -16.41   +0.001   -0.091   +0.003
    after     -10.21    -13.72     -12.39    -15.91   +0.001   -0.091   +0.004
  
    width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.
    Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole file.
  $ host render - --out-dir out <tones.wav
  ! mirelon-host: standard input has no name to go by in out
  [2]
  $ host render tones.wav short.wav tones.wav --out-dir out --jobs 1
  ! mirelon-host: tones.wav: another IN goes to tones.wav as well
  [2]
  $ echo file >file
  $ host render tones.wav --out-dir file
  ! mirelon-host: file: cannot be made (Not a directory)
  [2]
  $ host render tones.wav folder.so --overwrite
  ! mirelon-host: folder.so: no audio format is called "so", known are wav, flac, ogg, oga, opus, aiff, aif, aifc, caf, w64, rf64, au, snd, mp3
  [2]
  $ host render tones.wav dithered.ogg --dither
  ! mirelon-host: dithered.ogg: OGG, Vorbis is not of integers, which dither is for
  [2]
  $ host render tones.wav new.wav --bank-file tones.wav
  ! mirelon-host: tones.wav: no preset or bank of this plug-in
  [2]
  $ host render tones.wav new.wav --preset-file missing.dvp
  ! mirelon-host: missing.dvp: cannot be read (No such file or directory)
  [2]
  $ host render tones.wav new.wav --chunk tones.wav
  ! mirelon-host: tones.wav: the plug-in does not take it as its state
  [2]
  $ host render empty.wav new.wav --loudness
  input     empty.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    new.wav (WAV, Signed 16 bit PCM)
  settings  the plug-in's own
  frames    0 (0.00 s)
  speed     N x real time
  
    dBFS     L peak     L RMS     R peak     R RMS    width  balance   correl
    before      -inf      -inf       -inf      -inf   +0.000   +0.000   +0.000
    after       -inf      -inf       -inf      -inf   +0.000   +0.000   +0.000
  
    width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.
    Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole file.
  
    loudness after EBU R 128
    before      -inf LUFS, true peak -inf dBTP
    after       -inf LUFS, true peak -inf dBTP
  $ host render three.wav new2.wav
  ! mirelon-host: three.wav: has 3 channels; only mono and stereo can be processed
  [2]
  $ host render tones.wav new2.opus
  ! mirelon-host: new2.opus: OGG, Opus at 44100 Hz cannot be written (Error : Opus only supports sample rates of 8000, 12000, 16000, 24000, and 48000)
  [2]
  $ host render tones.wav loud.wav --set gain=12 --quiet
  ! mirelon-host: warning: loud.wav: 1602 samples are beyond full scale, the highest by 0.79 dB; --headroom 0.8 or --bits float keeps them whole
  $ host render loud.wav mono.wav --out-dir crashed --plugin crash.so --jobs 1 --block 30
  crashed/mono.wav: 0.07 s, N x real time
  1 of 2 files rendered
  failed    loud.wav
  ! mirelon-host: loud.wav: the plug-in crashed (Killed)
  [2]
  $ ln -s /dev/null null.wav
  $ host render tones.wav null.wav --overwrite
  ! mirelon-host: /dev/null: not a regular file
  [2]
  $ for kind in w64 rf64 aiff caf au flac ogg; do
  >   host render tones.wav "whole.$kind" --quiet --format $kind
  >   head -c 5000 "whole.$kind" >"cut.$kind"
  >   echo $kind; host render "cut.$kind" "cut.$kind.wav" | sed -n '/^frames/p; /^!/p'
  > done
  w64
  frames    1224 (0.03 s)
  ! mirelon-host: warning: cut.w64: cut short: 0.11 s (4776 frames) of 0.14 s cannot be read
  rf64
  frames    1224 (0.03 s)
  ! mirelon-host: warning: cut.rf64: cut short: 0.11 s (4776 frames) of 0.14 s cannot be read
  aiff
  frames    1236 (0.03 s)
  ! mirelon-host: warning: cut.aiff: cut short: 0.11 s (4764 frames) of 0.14 s cannot be read
  caf
  ! mirelon-host: cut.caf: not an audio file (Supported file format but file is malformed)
  au
  frames    1244 (0.03 s)
  ! mirelon-host: warning: cut.au: cut short: 0.11 s (4756 frames) of 0.14 s cannot be read
  flac
  frames    6000 (0.14 s)
  ogg
  frames    0 (0.00 s)
  $ host plot empty.wav picture.png
  picture.png: empty.wav before and after
  $ host screenshot picture.jpg
  ! mirelon-host: picture.jpg: the picture is a PNG file, its name ends in .png
  [2]
  $ host screenshot picture.png --input empty.wav
  ! mirelon-host: empty.wav: there is no sound in it
  [2]
  $ host edit --once
  ! mirelon-host: --once requires IN (--help shows how)
  [2]
  $ host edit --device none
  ! mirelon-host: --device: there is nothing to play, name a file or --input
  [2]

Banks and presets:

  $ host bank save all.dvb
  all.dvb: a bank of 11 presets
  $ host preset save one.dvp
  one.dvp: preset "init"
  $ host bank show all.dvb --json >bank.json
  $ edited() { sed "$1" bank.json >edited.json; host bank import edited.json edited.dvb; }
  $ edited 's/"big"/"middle"/'
  ! mirelon-host: edited.json: byteOrder.values: is neither "big" nor "little"
  [2]
  $ edited 's/"little"/"middle"/'
  ! mirelon-host: edited.json: byteOrder.owner: is neither "big" nor "little"
  [2]
  $ edited 's/"version": 1/"version": 2/'
  ! mirelon-host: edited.json: version: is not 1, which is known here
  [2]
  $ edited 's/"swapped"/"a name of more than 24 bytes"/'
  ! mirelon-host: edited.json: presets[10].name: 28 bytes, 24 is the most
  [2]
  $ edited 's/"swapped"/"sw\\u0000apped"/'
  ! mirelon-host: edited.json: presets[10].name: contains a zero
  [2]
  $ edited 's/"swapped"/{"bytes": "0g"}/'
  ! mirelon-host: edited.json: presets[10].name: "bytes" are not 48 hexadecimal digits
  [2]
  $ edited 's/"swapped"/{}/'
  ! mirelon-host: edited.json: presets[10].name: "bytes" is missing
  [2]
  $ edited 's/"swapped"/7/'
  ! mirelon-host: edited.json: presets[10].name: is no object
  [2]
  $ edited '0,/"width": 0.5/s//"width": 1.5/'
  ! mirelon-host: edited.json: presets[0].values.width: 1.5 is not 0 to 1
  [2]
  $ edited '0,/"width": 0.5/s//"width": "half"/'
  ! mirelon-host: edited.json: presets[0].values.width: is no number
  [2]
  $ edited '0,/"values"/s//"value"/'
  ! mirelon-host: edited.json: byteOrder: "values" is missing
  [2]
  $ edited '0,/"presets"/s//"preset"/'
  ! mirelon-host: edited.json: the bank: "presets" is missing
  [2]
  $ echo '[]' >edited.json
  $ host bank import edited.json edited.dvb
  ! mirelon-host: edited.json: the bank: is no object
  [2]
  $ { printf 'abcd'; tail -c +5 one.dvp; } >other.dvp
  $ host verify other.dvp
  other.dvp: byte 0: the owner is 61 62 63 64, not this plug-in
  ! mirelon-host: 1 problem found
  [2]
  $ host preset show other.dvp
  ! mirelon-host: other.dvp: no preset or bank of this plug-in
  [2]
  $ { head -c 4 one.dvp; printf '\42'; tail -c +6 one.dvp; } >typed.dvp
  $ host verify typed.dvp
  typed.dvp: byte 4: the type is 22, neither preset (21) nor bank (37)
  ! mirelon-host: 1 problem found
  [2]
  $ { head -c 5 one.dvp; printf '\0x'; tail -c +8 one.dvp; } >named.dvp
  $ host verify named.dvp
  named.dvp: a good preset
  named.dvp: note: preset 0 has no name
  named.dvp: note: "": more bytes behind the name's end
  $ cp one.dvp one.dvb
  $ host verify one.dvb
  one.dvb: byte 4: a preset, though the file's name ends in .dvb
  ! mirelon-host: 1 problem found
  [2]
  $ head -c 3 one.dvp >tiny.dvp
  $ host verify tiny.dvp
  tiny.dvp: byte 3: ends before its header does
  ! mirelon-host: 1 problem found
  [2]
  $ { head -c 300 all.dvb; printf '\377\377\377\377'; tail -c +305 all.dvb; } >damaged.dvb
  $ host render tones.wav new3.wav --bank-file damaged.dvb
  ! mirelon-host: damaged.dvb: value 8 of preset 4 is not 0 to 1 (`verify` says more)
  [2]
  $ host chunk load folder.so
  ! mirelon-host: folder.so: cannot be read (Is a directory)
  [2]
