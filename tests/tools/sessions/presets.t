Presets, banks and states in files.

  $ . "$TESTDIR/begin"

States:

  $ host chunk save state --preset 2 --set gain=-6
  state: 692 bytes
  $ od -A d -t x1z state | head -n 8
  0000000 00 00 00 01 6e 4c 72 4d 0b 00 00 00 02 00 00 00  >....nLrM........<
  0000016 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  >................<
  0000032 69 6e 69 74 00 00 00 00 00 00 00 00 00 00 00 00  >init............<
  0000048 00 00 00 00 00 00 00 00 3f 00 00 00 3f 00 00 00  >........?...?...<
  0000064 3f 00 00 00 3f 00 00 00 3f 00 00 00 3f 80 00 00  >?...?...?...?...<
  0000080 00 00 00 00 00 00 00 00 00 00 00 00 65 78 74 65  >............exte<
  0000096 6e 64 65 64 20 77 69 64 74 68 00 00 00 00 00 00  >nded width......<
  0000112 00 00 00 00 3f 20 00 00 3f 00 00 00 3f 00 00 00  >....? ..?...?...<
  $ host chunk show state | sed 's/^>/*/'
  state: 692 bytes, a bank of 11 presets, current 2
                                     width      gain   balance stability centerPos   process     phase        -L        -R
     0  init                           0.5       0.5       0.5       0.5       0.5         1         0         0         0
     1  extended width               0.625       0.5       0.5       0.5       0.5         1         0         0         0
  *  2  reduced width                0.375      0.25       0.5       0.5       0.5         1         0         0         0
     3  balanse to the left            0.5       0.5       0.7       0.5       0.5         1         1         0         0
     4  balanse to the right           0.5       0.5       0.3       0.5       0.5         1         1         0         0
     5  side bal left                  0.5       0.5       0.5      0.75       0.5         1         0         0         0
     6  side bal right                 0.5       0.5       0.5      0.25       0.5         1         0         0         0
     7  center shift left              0.5       0.5       0.5       0.5       0.8         1         0         0         0
     8  center shift right             0.5       0.5       0.5       0.5       0.2         1         0         0         0
     9  out of phase                   0.5       0.5       0.5       0.5       0.5         1         0         0         1
    10  swapped                        0.5       0.5       0.5       0.5       0.5         1         1         0         0
  $ host chunk load state
  state: taken, program "reduced width"
    width 56.25 %
    gain -6.00 dB
    balance C
    stability C
    centerPos C
    process On
    phase Off
    -L +L
    -R +R
  $ host chunk show tones.wav
  tones.wav: 24044 bytes, of a form only the plug-in knows
  $ host chunk load tones.wav
  ! mirelon-host: tones.wav: the plug-in does not take it as its state
  [2]
  $ host chunk
  ! mirelon-host: A subcommand is required (--help shows how)
  [2]
  $ host chunk show missing
  ! mirelon-host: missing: cannot be read (No such file or directory)
  [2]

Presets:

  $ host preset save one.dvp --preset "side bal left" --set width=120%
  one.dvp: preset "side bal left"
  $ od -A d -t x1z one.dvp
  0000000 6e 4c 72 4d 21 73 69 64 65 20 62 61 6c 20 6c 65  >nLrM!side bal le<
  0000016 66 74 00 00 00 00 00 00 00 00 00 00 00 3f 0c 37  >ft...........?.7<
  0000032 8c 3f 00 00 00 3f 00 00 00 3f 40 00 00 3f 00 00  >.?...?...?@..?..<
  0000048 00 3f 80 00 00 00 00 00 00 00 00 00 00 00 00 00  >.?..............<
  0000064 00                                               >.<
  0000065
  $ host preset show one.dvp
  one.dvp: a preset, written by a little-endian machine
                                 width     gain  balance  stability  centerPos  process  phase  -L  -R
    side bal left             120.00 %  0.00 dB        C        25L          C       On    Off  +L  +R
  $ host preset show one.dvp --json
  ! mirelon-host: The following argument was not expected: --json (--help shows how)
  [2]
  $ host preset show tones.wav
  ! mirelon-host: tones.wav: no preset or bank of this plug-in
  [2]
  $ host preset save missing/one.dvp
  ! mirelon-host: missing/one.dvp: cannot be written (No such file or directory)
  [2]
  $ host preset save one.dvp
  one.dvp: preset "init"

Banks:

  $ host bank save all.dvb
  all.dvb: a bank of 11 presets
  $ md5sum all.dvb
  4024aff81a6bd82e16e72cacae29860e  all.dvb
  $ host bank show all.dvb
  all.dvb: a bank of 11 presets, written by a little-endian machine
                                     width     gain  balance  stability  centerPos  process  phase  -L  -R
     0  init                      100.00 %  0.00 dB        C          C          C       On    Off  +L  +R
     1  extended width            156.25 %  0.00 dB        C          C          C       On    Off  +L  +R
     2  reduced width              56.25 %  0.00 dB        C          C          C       On    Off  +L  +R
     3  balanse to the left       100.00 %  0.00 dB      20L          C          C       On     On  +L  +R
     4  balanse to the right      100.00 %  0.00 dB      20R          C          C       On     On  +L  +R
     5  side bal left             100.00 %  0.00 dB        C        25L          C       On    Off  +L  +R
     6  side bal right            100.00 %  0.00 dB        C        25R          C       On    Off  +L  +R
     7  center shift left         100.00 %  0.00 dB        C          C        30L       On    Off  +L  +R
     8  center shift right        100.00 %  0.00 dB        C          C        30R       On    Off  +L  +R
     9  out of phase              100.00 %  0.00 dB        C          C          C       On    Off  +L  -R
    10  swapped                   100.00 %  0.00 dB        C          C          C       On     On  +L  +R
  $ host bank show all.dvb --json >bank.json
  $ head -n 40 bank.json
  {
    "version": 1,
    "bank": "MrLn",
    "byteOrder": {
      "owner": "little",
      "values": "big"
    },
    "presets": [
      {
        "name": "init",
        "values": {
          "width": 0.5,
          "gain": 0.5,
          "balance": 0.5,
          "stability": 0.5,
          "centerPos": 0.5,
          "process": 1.0,
          "phase": 0.0,
          "-L": 0.0,
          "-R": 0.0
        }
      },
      {
        "name": "extended width",
        "values": {
          "width": 0.625,
          "gain": 0.5,
          "balance": 0.5,
          "stability": 0.5,
          "centerPos": 0.5,
          "process": 1.0,
          "phase": 0.0,
          "-L": 0.0,
          "-R": 0.0
        }
      },
      {
        "name": "reduced width",
        "values": {
          "width": 0.375,
  $ md5sum bank.json
  94c221901f9b4fa647d66454b35793a7  bank.json
  $ host bank import bank.json again.dvb
  again.dvb: a bank of 11 presets
  $ cmp all.dvb again.dvb
  $ sed 's/"gain"/"gian"/' bank.json >wrong.json
  $ host bank import wrong.json wrong.dvb
  ! mirelon-host: wrong.json: presets[0].values: "gain" is missing
  [2]
  $ head -n 20 bank.json >half.json
  $ host bank import half.json wrong.dvb
  ! mirelon-host: half.json: no JSON: parse error at line 21, column 1: syntax error while parsing object - unexpected end of input; expected '}'
  [2]
  $ host bank show one.dvp
  ! mirelon-host: one.dvp: a preset, not a bank
  [2]
  $ host chunk save banked --bank-file all.dvb --preset-file one.dvp
  ! mirelon-host: The following arguments were not expected: one.dvp --preset-file all.dvb --bank-file (--help shows how)
  [2]
  $ host chunk show banked
  ! mirelon-host: banked: cannot be read (No such file or directory)
  [2]

Byte orders:

  $ host convert all.dvb big.dvb --byte-order big
  big.dvb: a bank as a big-endian machine writes it
  $ host bank show big.dvb | head -n 3
  big.dvb: a bank of 11 presets, written by a big-endian machine
                                     width     gain  balance  stability  centerPos  process  phase  -L  -R
     0  init                      100.00 %  0.00 dB        C          C          C       On    Off  +L  +R
  $ host convert one.dvp big.dvp --byte-order big
  big.dvp: a preset as a big-endian machine writes it
  $ od -A d -t x1z big.dvp | head -n 2
  0000000 4d 72 4c 6e 21 69 6e 69 74 00 00 00 00 00 00 00  >MrLn!init.......<
  0000016 00 00 00 00 00 00 00 00 00 00 00 00 00 3f 00 00  >.............?..<
  $ host convert big.dvb little.dvb --byte-order little
  little.dvb: a bank as a little-endian machine writes it
  $ cmp all.dvb little.dvb
  $ host convert one.dvp middle.dvp --byte-order middle
  ! mirelon-host: --byte-order: middle not in {big,little} (--help shows how)
  [2]
  $ host convert tones.wav big.dvb --byte-order big
  ! mirelon-host: tones.wav: no preset or bank of this plug-in
  [2]

What is wrong with them:

  $ host verify all.dvb big.dvb one.dvp big.dvp
  all.dvb: a good bank
  big.dvb: a good bank
  big.dvb: note: of the other byte order: the editor loads it with a right click on the load button
  one.dvp: a good preset
  big.dvp: a good preset
  big.dvp: note: of the other byte order: the editor loads it with a right click on the load button
  $ { head -c 300 all.dvb; printf '\377\377\377\377'; tail -c +305 all.dvb; } >damaged.dvb
  $ host verify damaged.dvb
  damaged.dvb: byte 301: preset 4 "balanse to the right", -R: -nan is not 0 to 1
  ! mirelon-host: 1 problem found
  [2]
  $ host bank show damaged.dvb
  damaged.dvb: a bank of 11 presets, written by a little-endian machine
                                     width     gain  balance  stability  centerPos  process  phase  -L     -R
     0  init                      100.00 %  0.00 dB        C          C          C       On    Off  +L     +R
     1  extended width            156.25 %  0.00 dB        C          C          C       On    Off  +L     +R
     2  reduced width              56.25 %  0.00 dB        C          C          C       On    Off  +L     +R
     3  balanse to the left       100.00 %  0.00 dB      20L          C          C       On     On  +L     +R
     4  balanse to the right      100.00 %  0.00 dB      20R          C          C       On     On  +L  -nan!
     5  side bal left             100.00 %  0.00 dB        C        25L          C       On    Off  +L     +R
     6  side bal right            100.00 %  0.00 dB        C        25R          C       On    Off  +L     +R
     7  center shift left         100.00 %  0.00 dB        C          C        30L       On    Off  +L     +R
     8  center shift right        100.00 %  0.00 dB        C          C        30R       On    Off  +L     +R
     9  out of phase              100.00 %  0.00 dB        C          C          C       On    Off  +L     -R
    10  swapped                   100.00 %  0.00 dB        C          C          C       On     On  +L     +R
  $ head -c 100 all.dvb >short.dvb
  $ host verify short.dvb one.dvp
  short.dvb: byte 100: ends here, a bank has 665 bytes: what is missing loads as 0
  short.dvb: note: preset 2 has no name
  short.dvb: note: preset 3 has no name
  short.dvb: note: preset 4 has no name
  short.dvb: note: preset 5 has no name
  short.dvb: note: preset 6 has no name
  short.dvb: note: preset 7 has no name
  short.dvb: note: preset 8 has no name
  short.dvb: note: preset 9 has no name
  short.dvb: note: preset 10 has no name
  one.dvp: a good preset
  ! mirelon-host: 1 problem found
  [2]
  $ host bank show short.dvb
  ! mirelon-host: short.dvb: not the size of a bank, which is 665 bytes
  [2]
  $ { cat one.dvp; echo more; } >long.dvp
  $ host verify long.dvp missing.dvp
  long.dvp: byte 65: more follows, a preset has 65 bytes: it is not read
  missing.dvp: cannot be read (No such file or directory)
  ! mirelon-host: 1 problem found, 1 file not read
  [2]
  $ host render tones.wav out.wav --bank-file short.dvb
  ! mirelon-host: short.dvb: not the size of a bank, which is 665 bytes
  [2]
  $ host render tones.wav out.wav --preset-file long.dvp
  ! mirelon-host: long.dvp: not the size of a preset, which is 65 bytes
  [2]
