What plug-ins say about themselves.

  $ . "$TESTDIR/begin"

In text, for each format:

  $ host info --plugin mirelon.so
  Dravik Mirelon
    file        mirelon.so
    product     Mirelon
    vendor      dravik.example, version 1980
    category    mastering
    interface   VST 2400, unique ID MrLn, version 1
    channels    2 in, 2 out, latency 0 frames
    flags       4145 (editor, replacing, chunks, double replacing)
    programs    1 (current "init")
  
  parameters
     0  width          100.00 %    0.5000  step 0.003906, small 0.000976, large 0.015625
     1  gain             0.00 dB   0.5000  step 0.003906, small 0.000976, large 0.015625
     2  balance             C      0.5000  step 0.003906, small 0.000976, large 0.015625
     3  stability           C      0.5000  step 0.003906, small 0.000976, large 0.015625
     4  centerPos           C      0.5000  step 0.003906, small 0.000976, large 0.015625
     5  process            On      1.0000  switch
     6  phase             Off      0.0000  switch
     7  -L                 +L      0.0000  switch
     8  -R                 +R      0.0000  switch
  
  presets
     0  init  (current)
     1  extended width
     2  reduced width
     3  balanse to the left
     4  balanse to the right
     5  side bal left
     6  side bal right
     7  center shift left
     8  center shift right
     9  out of phase
    10  swapped
  $ host info --plugin mirelon.clap
  Dravik Mirelon
    file        mirelon.clap
    product     Dravik Mirelon
    vendor      dravik.example, version 1980
    category    mastering
    interface   CLAP
    channels    2 in, 2 out, latency 0 frames
    flags       4145 (editor, replacing, chunks, double replacing)
    programs    1 (current "init")
  
  parameters
     0  width        100.00 %      0.5000
     1  gain          0.00 dB      0.5000
     2  balance             C      0.5000
     3  stability           C      0.5000
     4  centerPos           C      0.5000
     5  process            On      1.0000  switch
     6  phase             Off      0.0000  switch
     7  -L                 +L      0.0000  switch
     8  -R                 +R      0.0000  switch
  
  presets
     0  init  (current)
     1  extended width
     2  reduced width
     3  balanse to the left
     4  balanse to the right
     5  side bal left
     6  side bal right
     7  center shift left
     8  center shift right
     9  out of phase
    10  swapped
  $ host info --plugin mirelon.lv2
  Dravik Mirelon
    file        mirelon.lv2/mirelon_dsp.so
    product     Dravik Mirelon
    vendor      dravik.example, version 2000
    category    spacializer
    interface   LV2, http://dravik.example/mirelon
    channels    2 in, 2 out, latency 0 frames
    flags       49 (editor, replacing, chunks)
    programs    1 (current "init")
  
  parameters
     0  Width          100.00 %    0.5000
     1  Gain             0.00 dB   0.5000
     2  Balance             C      0.5000
     3  Stability           C      0.5000
     4  Center Position        C      0.5000
     5  Process            On      1.0000  switch
     6  Phase             Off      0.0000  switch
     7  Invert Left       Off      0.0000  switch
     8  Invert Right      Off      0.0000  switch
  
  presets
     0  init  (current)
     1  extended width
     2  reduced width
     3  balanse to the left
     4  balanse to the right
     5  side bal left
     6  side bal right
     7  center shift left
     8  center shift right
     9  out of phase
    10  swapped

Other plug-ins:

  $ host info --plugin displays.so
  
    file        displays.so
    product     
    vendor      , version 0
    category    unknown
    interface   VST 0, unique ID TEST, version 0
    channels    2 in, 2 out, latency 0 frames
    flags       16 (replacing)
    programs    0 (current "")
  
  parameters
     0  Drive         -9.6 dB dB   0.3000  not automatable
     1  Mix              30 %      0.3000  not automatable
     2  Release        157,00 ms   0.3000  not automatable
     3  Damping          70.0 %    0.3000  not automatable
     4  Mode             Soft      0.3000  not automatable
     5  Voices              3      0.3000  not automatable
     6  Pan               40L      0.3000  not automatable
  
  presets
  $ host info --plugin notes.so
  
    file        notes.so
    product     
    vendor      , version 0
    category    unknown
    interface   VST 0, unique ID TEST, version 0
    channels    2 in, 2 out, latency 100 frames
    flags       4113 (editor, replacing, double replacing)
    programs    0 (current "")
  
  parameters
  
  presets
  $ host info --plugin lookahead.so
  
    file        lookahead.so
    product     
    vendor      , version 0
    category    unknown
    interface   VST 0, unique ID TEST, version 0
    channels    2 in, 2 out, latency 3 frames
    flags       16 (replacing)
    programs    0 (current "")
  
  parameters
  
  presets
  $ host info --plugin onlymain.so
  
    file        onlymain.so
    product     
    vendor      , version 0
    category    unknown
    interface   VST 0, unique ID TEST, version 0
    channels    1 in, 1 out, latency 0 frames
    flags       16 (replacing)
    programs    0 (current "")
  
  parameters
  
  presets
  $ host info --plugin test.clap
  Test
    file        test.clap
    product     Test
    vendor      Mirelon, version 1000
    category    effect
    interface   CLAP
    channels    2 in, 2 out, latency 0 frames
    flags       48 (replacing, chunks)
    programs    0 (current "")
  
  parameters
     0  Gain           1.0000      0.5000
     1  Mode           0.0000      0.0000
     2  Tone           0.0000      0.5000
  
  presets
  $ host info --plugin amplifier.lv2
  Test Amplifier
    file        amplifier.lv2/amplifier.so
    product     Test Amplifier
    vendor      Test Vendor, version 3004
    category    effect
    interface   LV2, urn:mirelon:test:amplifier
    channels    1 in, 1 out, latency 7 frames
    flags       16 (replacing)
    programs    2 (current "loud")
  
  parameters
     0  Factor           1.00 x    0.2500
     1  Mode            Plain      0.0000
     2  Mute              Off      0.0000  switch
     3  Tone          1000.00 Hz   0.5000
     4  Steps               2      0.2500
  
  presets
     0  loud  (current)
     1  muted
  $ for unit in pc db khz mhz ms s min bpm cent semitone12TET oct degree frame other; do
  >   rm -rf changed.lv2; cp -rL amplifier.lv2 changed.lv2
  >   sed -i "s/units:hz/units:$unit/" changed.lv2/*.ttl
  >   host info --plugin changed.lv2 | grep Tone
  > done
     3  Tone          1000.00 %    0.5000
     3  Tone          1000.00 dB   0.5000
     3  Tone          1000.00 kHz  0.5000
     3  Tone          1000.00 MHz  0.5000
     3  Tone          1000.00 ms   0.5000
     3  Tone          1000.00 s    0.5000
     3  Tone          1000.00 min  0.5000
     3  Tone          1000.00 BPM  0.5000
     3  Tone          1000.00 ct   0.5000
     3  Tone          1000.00 semi 0.5000
     3  Tone          1000.00 oct  0.5000
     3  Tone          1000.00 deg  0.5000
     3  Tone          1000.00 frames 0.5000
     3  Tone          1000.00      0.5000
  $ host info --plugin displays.so --parameter-names
  Drive
  Mix
  Release
  Damping
  Mode
  Voices
  Pan

As JSON:

  $ host info --plugin mirelon.so --json
  {
    "version": 1,
    "file": "mirelon.so",
    "format": "VST 2",
    "name": "Dravik Mirelon",
    "product": "Mirelon",
    "vendor": "dravik.example",
    "vendorVersion": 1980,
    "vstVersion": 2400,
    "category": "mastering",
    "record": {
      "magic": "VstP",
      "uniqueID": "MrLn",
      "version": 1,
      "programs": 1,
      "parameters": 9,
      "inputs": 2,
      "outputs": 2,
      "initialDelay": 0,
      "flags": 4145,
      "flagNames": [
        "editor",
        "replacing",
        "chunks",
        "double replacing"
      ]
    },
    "parameters": [
      {
        "index": 0,
        "name": "width",
        "label": "    %   ",
        "value": 0.5,
        "display": "100.00",
        "automatable": true,
        "properties": {
          "label": "width",
          "shortLabel": "width",
          "flags": 4,
          "switch": false,
          "step": 0.003906,
          "smallStep": 0.000976,
          "largeStep": 0.015625
        }
      },
      {
        "index": 1,
        "name": "gain",
        "label": "   dB   ",
        "value": 0.5,
        "display": "0.00",
        "automatable": true,
        "properties": {
          "label": "gain",
          "shortLabel": "gain",
          "flags": 4,
          "switch": false,
          "step": 0.003906,
          "smallStep": 0.000976,
          "largeStep": 0.015625
        }
      },
      {
        "index": 2,
        "name": "balance",
        "label": "       ",
        "value": 0.5,
        "display": "C",
        "automatable": true,
        "properties": {
          "label": "balance",
          "shortLabel": "balance",
          "flags": 4,
          "switch": false,
          "step": 0.003906,
          "smallStep": 0.000976,
          "largeStep": 0.015625
        }
      },
      {
        "index": 3,
        "name": "stability",
        "label": "         ",
        "value": 0.5,
        "display": "C",
        "automatable": true,
        "properties": {
          "label": "stability",
          "shortLabel": "stabili",
          "flags": 4,
          "switch": false,
          "step": 0.003906,
          "smallStep": 0.000976,
          "largeStep": 0.015625
        }
      },
      {
        "index": 4,
        "name": "centerPos",
        "label": "         ",
        "value": 0.5,
        "display": "C",
        "automatable": true,
        "properties": {
          "label": "centerPos",
          "shortLabel": "centerP",
          "flags": 4,
          "switch": false,
          "step": 0.003906,
          "smallStep": 0.000976,
          "largeStep": 0.015625
        }
      },
      {
        "index": 5,
        "name": "process",
        "label": "         ",
        "value": 1.0,
        "display": "On",
        "automatable": true,
        "properties": {
          "label": "process",
          "shortLabel": "process",
          "flags": 5,
          "switch": true,
          "step": 1.0,
          "smallStep": 1.0,
          "largeStep": 1.0
        }
      },
      {
        "index": 6,
        "name": "phase",
        "label": "         ",
        "value": 0.0,
        "display": "Off",
        "automatable": true,
        "properties": {
          "label": "phase",
          "shortLabel": "phase",
          "flags": 5,
          "switch": true,
          "step": 1.0,
          "smallStep": 1.0,
          "largeStep": 1.0
        }
      },
      {
        "index": 7,
        "name": "-L",
        "label": "    ",
        "value": 0.0,
        "display": "+L",
        "automatable": true,
        "properties": {
          "label": "-L",
          "shortLabel": "-L",
          "flags": 5,
          "switch": true,
          "step": 1.0,
          "smallStep": 1.0,
          "largeStep": 1.0
        }
      },
      {
        "index": 8,
        "name": "-R",
        "label": "    ",
        "value": 0.0,
        "display": "+R",
        "automatable": true,
        "properties": {
          "label": "-R",
          "shortLabel": "-R",
          "flags": 5,
          "switch": true,
          "step": 1.0,
          "smallStep": 1.0,
          "largeStep": 1.0
        }
      }
    ],
    "program": "init",
    "currentPreset": 0,
    "presets": [
      "init",
      "extended width",
      "reduced width",
      "balanse to the left",
      "balanse to the right",
      "side bal left",
      "side bal right",
      "center shift left",
      "center shift right",
      "out of phase",
      "swapped"
    ]
  }
  $ host info --plugin mirelon.lv2 --json
  {
    "version": 1,
    "file": "mirelon.lv2/mirelon_dsp.so",
    "format": "LV2",
    "name": "Dravik Mirelon",
    "product": "Dravik Mirelon",
    "vendor": "dravik.example",
    "vendorVersion": 2000,
    "vstVersion": 0,
    "category": "spacializer",
    "record": {
      "magic": "VstP",
      "uniqueID": "MrLn",
      "version": 2000,
      "programs": 1,
      "parameters": 9,
      "inputs": 2,
      "outputs": 2,
      "initialDelay": 0,
      "flags": 49,
      "flagNames": [
        "editor",
        "replacing",
        "chunks"
      ]
    },
    "parameters": [
      {
        "index": 0,
        "name": "Width",
        "label": "%",
        "value": 0.5,
        "display": "100.00",
        "automatable": true
      },
      {
        "index": 1,
        "name": "Gain",
        "label": "dB",
        "value": 0.5,
        "display": "0.00",
        "automatable": true
      },
      {
        "index": 2,
        "name": "Balance",
        "label": "",
        "value": 0.5,
        "display": "C",
        "automatable": true
      },
      {
        "index": 3,
        "name": "Stability",
        "label": "",
        "value": 0.5,
        "display": "C",
        "automatable": true
      },
      {
        "index": 4,
        "name": "Center Position",
        "label": "",
        "value": 0.5,
        "display": "C",
        "automatable": true
      },
      {
        "index": 5,
        "name": "Process",
        "label": "",
        "value": 1.0,
        "display": "On",
        "automatable": true,
        "properties": {
          "label": "Process",
          "shortLabel": "",
          "flags": 1,
          "switch": true,
          "step": 0.0,
          "smallStep": 0.0,
          "largeStep": 0.0
        }
      },
      {
        "index": 6,
        "name": "Phase",
        "label": "",
        "value": 0.0,
        "display": "Off",
        "automatable": true,
        "properties": {
          "label": "Phase",
          "shortLabel": "",
          "flags": 1,
          "switch": true,
          "step": 0.0,
          "smallStep": 0.0,
          "largeStep": 0.0
        }
      },
      {
        "index": 7,
        "name": "Invert Left",
        "label": "",
        "value": 0.0,
        "display": "Off",
        "automatable": true,
        "properties": {
          "label": "Invert Left",
          "shortLabel": "",
          "flags": 1,
          "switch": true,
          "step": 0.0,
          "smallStep": 0.0,
          "largeStep": 0.0
        }
      },
      {
        "index": 8,
        "name": "Invert Right",
        "label": "",
        "value": 0.0,
        "display": "Off",
        "automatable": true,
        "properties": {
          "label": "Invert Right",
          "shortLabel": "",
          "flags": 1,
          "switch": true,
          "step": 0.0,
          "smallStep": 0.0,
          "largeStep": 0.0
        }
      }
    ],
    "program": "init",
    "currentPreset": 0,
    "presets": [
      "init",
      "extended width",
      "reduced width",
      "balanse to the left",
      "balanse to the right",
      "side bal left",
      "side bal right",
      "center shift left",
      "center shift right",
      "out of phase",
      "swapped"
    ],
    "uri": "http://dravik.example/mirelon"
  }
  $ host info --plugin displays.so --json
  {
    "version": 1,
    "file": "displays.so",
    "format": "VST 2",
    "name": "",
    "product": "",
    "vendor": "",
    "vendorVersion": 0,
    "vstVersion": 0,
    "category": "unknown",
    "record": {
      "magic": "VstP",
      "uniqueID": "TEST",
      "version": 0,
      "programs": 0,
      "parameters": 7,
      "inputs": 2,
      "outputs": 2,
      "initialDelay": 0,
      "flags": 16,
      "flagNames": [
        "replacing"
      ]
    },
    "parameters": [
      {
        "index": 0,
        "name": "Drive",
        "label": "dB",
        "value": 0.300000,
        "display": "-9.6 dB",
        "automatable": false
      },
      {
        "index": 1,
        "name": "Mix",
        "label": "",
        "value": 0.300000,
        "display": "30 %",
        "automatable": false
      },
      {
        "index": 2,
        "name": "Release",
        "label": "ms",
        "value": 0.300000,
        "display": "157,00",
        "automatable": false
      },
      {
        "index": 3,
        "name": "Damping",
        "label": "%",
        "value": 0.300000,
        "display": "70.0",
        "automatable": false
      },
      {
        "index": 4,
        "name": "Mode",
        "label": "",
        "value": 0.300000,
        "display": "Soft",
        "automatable": false
      },
      {
        "index": 5,
        "name": "Voices",
        "label": "",
        "value": 0.300000,
        "display": "3",
        "automatable": false
      },
      {
        "index": 6,
        "name": "Pan",
        "label": "",
        "value": 0.300000,
        "display": "40L",
        "automatable": false
      }
    ],
    "program": "",
    "currentPreset": 0,
    "presets": []
  }

What is none:

  $ host info --plugin missing.so
  ! mirelon-host: missing.so: no such plug-in file
  [2]
  $ host info --plugin tones.wav
  ! mirelon-host: tones.wav: not a plug-in (tones.wav: invalid ELF header)
  [2]
  $ host info --plugin noentry.so
  ! mirelon-host: noentry.so: not a VST 2 plug-in (it exports no VSTPluginMain)
  [2]
  $ host info --plugin .
  ! mirelon-host: .: a folder, but no LV2 bundle (it has no manifest.ttl)
  [2]
  $ host info --plugin negativecount.so
  ! mirelon-host: negativecount.so: the plug-in's effect record has a negative count
  [2]
  $ host info --plugin mirelon.so --json --parameter-names
  ! mirelon-host: --json excludes --parameter-names (--help shows how)
  [2]
  $ host
  ! mirelon-host: A subcommand is required (--help shows how)
  [2]
  $ host information
  ! mirelon-host: unknown command "information", the nearest is "info"
  [2]
  $ host --version
  1.9.8
