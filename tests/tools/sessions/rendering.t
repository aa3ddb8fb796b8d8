Sound through a plug-in, and what is said of it.

  $ . "$TESTDIR/begin"

  $ host render tones.wav same.wav
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    same.wav (WAV, Signed 16 bit PCM)
  settings  the plug-in's own
  frames    6000 (0.14 s)
  speed     N x real time
  
    dBFS     L peak     L RMS     R peak     R RMS    width  balance   correl
    before    -11.21    -14.22     -13.39    -16.41   +0.001   -0.091   +0.003
    after     -11.21    -14.22     -13.39    -16.41   +0.001   -0.091   +0.003
  
    width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.
    Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole file.
  $ host compare tones.wav same.wav
  tones.wav and same.wav: identical
  $ host compare tones.wav same.wav --json
  {
    "version": 1,
    "a": {
      "file": "tones.wav",
      "sampleRate": 44100,
      "channels": 2,
      "frames": 6000,
      "missingFrames": 0
    },
    "b": {
      "file": "same.wav",
      "sampleRate": 44100,
      "channels": 2,
      "frames": 6000,
      "missingFrames": 0
    },
    "identical": true,
    "firstDifferentFrame": null,
    "differentFrames": 0,
    "difference": {
      "peak": null,
      "rms": null
    }
  }
  $ host render tones.wav moved.wav --preset 3 --set gain=-3 --set-normalised stability=0.75
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    moved.wav (WAV, Signed 16 bit PCM)
  settings  preset 3 "balanse to the left", gain -3.00 dB, stability 25L
  frames    6000 (0.14 s)
  speed     N x real time
  
    dBFS     L peak     L RMS     R peak     R RMS    width  balance   correl
    before    -11.21    -14.22     -13.39    -16.41   +0.001   -0.091   +0.003
    after      -9.54    -14.28     -19.47    -23.87   +0.001   -0.398   +0.005
  
    width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.
    Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole file.
  $ md5sum moved.wav
  bc37ae6e2fa80377b3cfc0a28b5588a3  moved.wav
  $ host compare tones.wav moved.wav
  tones.wav and moved.wav: different
    first       frame 1 (0.000 s)
    frames      5999 differ
    difference  peak -4.32 dBFS, RMS -12.38 dBFS
  [1]
  $ host compare tones.wav moved.wav --json
  {
    "version": 1,
    "a": {
      "file": "tones.wav",
      "sampleRate": 44100,
      "channels": 2,
      "frames": 6000,
      "missingFrames": 0
    },
    "b": {
      "file": "moved.wav",
      "sampleRate": 44100,
      "channels": 2,
      "frames": 6000,
      "missingFrames": 0
    },
    "identical": false,
    "firstDifferentFrame": 1,
    "differentFrames": 5999,
    "difference": {
      "peak": -4.317981,
      "rms": -12.380081
    }
  }
  [1]
  $ host compare tones.wav moved.wav --quiet
  [1]
  $ host render tones.wav double.wav --double --preset "out of phase" --bits 24 --headroom 3 --loudness
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    double.wav (WAV, Signed 24 bit PCM)
  settings  preset 9 "out of phase"
  headroom  the output is lowered by 3.00 dB
  frames    6000 (0.14 s)
  speed     N x real time
  
    dBFS     L peak     L RMS     R peak     R RMS    width  balance   correl
    before    -11.21    -14.22     -13.39    -16.41   +0.001   -0.091   +0.003
    after     -14.21    -17.22     -16.39    -19.41   -0.001   -0.091   -0.003
  
    width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.
    Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole file.
  
    loudness after EBU R 128
    before      -inf LUFS, true peak -11.21 dBTP
    after       -inf LUFS, true peak -14.21 dBTP
  $ host render tones.wav clipped.wav --set gain=40 --set width=150% --block 100
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    clipped.wav (WAV, Signed 16 bit PCM)
  settings  gain 12.00 dB, width 150.00 %
  frames    6000 (0.14 s)
  speed     N x real time
  
    dBFS     L peak     L RMS     R peak     R RMS    width  balance   correl
    before    -11.21    -14.22     -13.39    -16.41   +0.001   -0.091   +0.003
    after       3.98     -0.19       2.53     -2.20   -0.145   -0.084   -0.392
  
    width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.
    Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole file.
  
    4089 samples were beyond full scale and are clipped in the output
  ! mirelon-host: warning: "40" is beyond the range of gain, taken as gain 12.00 dB
  ! mirelon-host: warning: clipped.wav: 4089 samples are beyond full scale, the highest by 3.98 dB; --headroom 4.0 or --bits float keeps them whole
  $ md5sum clipped.wav
  6228a87278b161dbfcb2e8077d9e3a93  clipped.wav
  $ host render tones.wav noclip.wav --set gain=20 --no-clip
  ! mirelon-host: noclip.wav: 1602 samples are beyond full scale, the highest by 0.79 dB; --headroom 0.8 or --bits float keeps them whole
  [2]
  $ host render tones.wav tones.json.wav --json --loudness --set balance=L20 --automate width=0:200
  {
    "version": 1,
    "files": [
      {
        "input": {
          "file": "tones.wav",
          "format": "WAV, Signed 16 bit PCM",
          "sampleRate": 44100,
          "channels": 2,
          "missingFrames": 0
        },
        "output": {
          "file": "tones.json.wav",
          "format": "WAV, Signed 16 bit PCM",
          "headroom": 0.0,
          "dither": false,
          "clippedSamples": 0
        },
        "settings": "balance 20L, width 200.00 % from 0.00",
        "frames": 6000,
        "seconds": 0.136054,
        "speed": N,
        "before": {
          "left": {
            "peak": -11.212575,
            "rms": -14.224682
          },
          "right": {
            "peak": -13.390921,
            "rms": -16.414091
          },
          "width": 0.001197,
          "balance": -0.090913,
          "correlation": 0.003426,
          "notFinite": 0,
          "loudness": null,
          "truePeak": -11.205086
        },
        "after": {
          "left": {
            "peak": -2.778385,
            "rms": -11.627003
          },
          "right": {
            "peak": -11.180189,
            "rms": -20.502917
          },
          "width": 0.004241,
          "balance": -0.368564,
          "correlation": 0.018453,
          "notFinite": 0,
          "loudness": null,
          "truePeak": -2.771317
        },
        "warnings": []
      }
    ]
  }
  $ host render tones.wav flat.wav --bits 8 --dither --quiet
  $ md5sum flat.wav
  38d03c2b022e063ff2866b4a52b96529  flat.wav
  $ host render tones.wav process.wav --set process=off --automate-normalised gain=0:1 --quiet
  $ md5sum process.wav
  97077a4ce06998e83fdbd740b7a6819b  process.wav
  $ host render mono.wav stereo.wav --preset "center shift left"
  input     mono.wav (WAV, Signed 16 bit PCM, 44100 Hz, mono)
  output    stereo.wav (WAV, Signed 16 bit PCM)
  settings  preset 7 "center shift left"
  frames    3000 (0.07 s)
  speed     N x real time
  
    dBFS     L peak     L RMS     R peak     R RMS    width  balance   correl
    before    -11.21    -14.21     -11.21    -14.21   +0.500   +0.000   +1.000
    after      -8.93    -11.93     -14.31    -17.31   +0.434   -0.223   +1.000
  
    width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.
    Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole file.
  $ host render empty.wav empty2.wav
  input     empty.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    empty2.wav (WAV, Signed 16 bit PCM)
  settings  the plug-in's own
  frames    0 (0.00 s)
  speed     N x real time
  
    dBFS     L peak     L RMS     R peak     R RMS    width  balance   correl
    before      -inf      -inf       -inf      -inf   +0.000   +0.000   +0.000
    after       -inf      -inf       -inf      -inf   +0.000   +0.000   +0.000
  
    width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.
    Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole file.
  $ host render empty.wav empty3.wav --json
  {
    "version": 1,
    "files": [
      {
        "input": {
          "file": "empty.wav",
          "format": "WAV, Signed 16 bit PCM",
          "sampleRate": 44100,
          "channels": 2,
          "missingFrames": 0
        },
        "output": {
          "file": "empty3.wav",
          "format": "WAV, Signed 16 bit PCM",
          "headroom": 0.0,
          "dither": false,
          "clippedSamples": 0
        },
        "settings": "",
        "frames": 0,
        "seconds": 0.0,
        "speed": N,
        "before": {
          "left": {
            "peak": null,
            "rms": null
          },
          "right": {
            "peak": null,
            "rms": null
          },
          "width": 0.0,
          "balance": 0.0,
          "correlation": 0.0,
          "notFinite": 0
        },
        "after": {
          "left": {
            "peak": null,
            "rms": null
          },
          "right": {
            "peak": null,
            "rms": null
          },
          "width": 0.0,
          "balance": 0.0,
          "correlation": 0.0,
          "notFinite": 0
        },
        "warnings": []
      }
    ]
  }
  $ host render tones.wav late.wav --plugin lookahead.so
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    late.wav (WAV, Signed 16 bit PCM)
  settings  the plug-in's own
  frames    6000 (0.14 s)
  speed     N x real time
  
    dBFS     L peak     L RMS     R peak     R RMS    width  balance   correl
    before    -11.21    -14.22     -13.39    -16.41   +0.001   -0.091   +0.003
    after      -5.22     -8.23      -7.38    -10.40   +0.001   -0.090   +0.003
  
    width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.
    Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole file.
  $ host render tones.wav clap.wav --plugin mirelon.clap --preset 9
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    clap.wav (WAV, Signed 16 bit PCM)
  settings  preset 9 "out of phase"
  frames    6000 (0.14 s)
  speed     N x real time
  
    dBFS     L peak     L RMS     R peak     R RMS    width  balance   correl
    before    -11.21    -14.22     -13.39    -16.41   +0.001   -0.091   +0.003
    after     -11.21    -14.22     -13.39    -16.41   -0.001   -0.091   -0.003
  
    width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.
    Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole file.
  $ host render tones.wav lv2.wav --plugin mirelon.lv2 --preset 9
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    lv2.wav (WAV, Signed 16 bit PCM)
  settings  preset 9 "out of phase"
  frames    6000 (0.14 s)
  speed     N x real time
  
    dBFS     L peak     L RMS     R peak     R RMS    width  balance   correl
    before    -11.21    -14.22     -13.39    -16.41   +0.001   -0.091   +0.003
    after     -11.21    -14.22     -13.39    -16.41   -0.001   -0.091   -0.003
  
    width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.
    Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole file.
  $ host render tones.wav vst2.wav --preset 9 --quiet
  $ host render tones.wav gain.wav --plugin test.clap --set gain=0.5 --set-normalised tone=0.25
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    gain.wav (WAV, Signed 16 bit PCM)
  settings  Gain 0.5000, Tone -6.0000
  frames    6000 (0.14 s)
  speed     N x real time
  
    dBFS     L peak     L RMS     R peak     R RMS    width  balance   correl
    before    -11.21    -14.22     -13.39    -16.41   +0.001   -0.091   +0.003
    after     -14.48    -17.49     -16.65    -19.68   +0.001   -0.091   +0.003
  
    width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.
    Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole file.
  $ host render mono.wav amplified.wav --plugin amplifier.lv2 --set factor=2 --automate tone=100:1000
  ! mirelon-host: urn:mirelon:test:amplifier: has 1 inputs and 1 outputs, two of each are needed
  [2]
  $ host render mono.wav muted.wav --plugin amplifier.lv2 --set mute=on --set mode=inverted --preset 1
  ! mirelon-host: urn:mirelon:test:amplifier: has 1 inputs and 1 outputs, two of each are needed
  [2]
  $ host compare clap.wav vst2.wav
  clap.wav and vst2.wav: identical
  $ host compare lv2.wav vst2.wav
  lv2.wav and vst2.wav: identical

Kinds of files:

  $ for kind in w64 rf64 aiff caf au flac ogg; do host render tones.wav "kind.$kind" | head -n 2; done
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    kind.w64 (W64, Signed 16 bit PCM)
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    kind.rf64 (RF64, Signed 16 bit PCM)
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    kind.aiff (AIFF, Signed 16 bit PCM)
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    kind.caf (CAF, Signed 16 bit PCM)
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    kind.au (AU, Signed 16 bit PCM)
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    kind.flac (FLAC, Signed 16 bit PCM)
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    kind.ogg (OGG, Vorbis)
  $ for bits in 16 24 32 float double; do host render tones.wav "bits$bits.wav" --bits $bits | sed -n 2p; done
  output    bits16.wav (WAV, Signed 16 bit PCM)
  output    bits24.wav (WAV, Signed 24 bit PCM)
  output    bits32.wav (WAV, Signed 32 bit PCM)
  output    bitsfloat.wav (WAV, 32 bit float)
  output    bitsdouble.wav (WAV, 64 bit float)

Many files:

  $ mkdir out
  $ host render tones.wav mono.wav empty.wav --out-dir out --jobs 1
  out/tones.wav: 0.14 s, N x real time
  out/mono.wav: 0.07 s, N x real time
  out/empty.wav: 0.00 s, N x real time
  3 of 3 files rendered
  $ host render tones.wav mono.wav --out-dir out --jobs 1
  0 of 2 files rendered
  failed    tones.wav
  failed    mono.wav
  ! mirelon-host: out/tones.wav: exists; --overwrite replaces it
  ! mirelon-host: out/mono.wav: exists; --overwrite replaces it
  [2]
  $ host render tones.wav mono.wav --out-dir out --jobs 1 --overwrite --json
  {
    "version": 1,
    "files": [
      {
        "input": {
          "file": "tones.wav",
          "format": "WAV, Signed 16 bit PCM",
          "sampleRate": 44100,
          "channels": 2,
          "missingFrames": 0
        },
        "output": {
          "file": "out/tones.wav",
          "format": "WAV, Signed 16 bit PCM",
          "headroom": 0.0,
          "dither": false,
          "clippedSamples": 0
        },
        "settings": "",
        "frames": 6000,
        "seconds": 0.136054,
        "speed": N,
        "before": {
          "left": {
            "peak": -11.212575,
            "rms": -14.224682
          },
          "right": {
            "peak": -13.390921,
            "rms": -16.414091
          },
          "width": 0.001197,
          "balance": -0.090913,
          "correlation": 0.003426,
          "notFinite": 0
        },
        "after": {
          "left": {
            "peak": -11.212575,
            "rms": -14.224682
          },
          "right": {
            "peak": -13.390921,
            "rms": -16.414091
          },
          "width": 0.001197,
          "balance": -0.090913,
          "correlation": 0.003426,
          "notFinite": 0
        },
        "warnings": []
      },
      {
        "input": {
          "file": "mono.wav",
          "format": "WAV, Signed 16 bit PCM",
          "sampleRate": 44100,
          "channels": 1,
          "missingFrames": 0
        },
        "output": {
          "file": "out/mono.wav",
          "format": "WAV, Signed 16 bit PCM",
          "headroom": 0.0,
          "dither": false,
          "clippedSamples": 0
        },
        "settings": "",
        "frames": 3000,
        "seconds": 0.068027,
        "speed": N,
        "before": {
          "left": {
            "peak": -11.212575,
            "rms": -14.209940
          },
          "right": {
            "peak": -11.212575,
            "rms": -14.209940
          },
          "width": 0.5,
          "balance": 0.0,
          "correlation": 1.0,
          "notFinite": 0
        },
        "after": {
          "left": {
            "peak": -11.212575,
            "rms": -14.209940
          },
          "right": {
            "peak": -11.212575,
            "rms": -14.209940
          },
          "width": 0.5,
          "balance": 0.0,
          "correlation": 1.0,
          "notFinite": 0
        },
        "warnings": []
      }
    ]
  }

What cannot be done:

  $ host render tones.wav same.wav
  ! mirelon-host: same.wav: exists; --overwrite replaces it
  [2]
  $ host render tones.wav
  ! mirelon-host: OUT is required (--help shows how)
  [2]
  $ host render missing.wav out.wav
  ! mirelon-host: missing.wav: cannot be read (No such file or directory)
  [2]
  $ host render tones.wav missing/out.wav
  ! mirelon-host: missing/out.wav: cannot be written (No such file or directory)
  [2]
  $ host render tones.wav out.txt
  ! mirelon-host: out.txt: no audio format is called "txt", known are wav, flac, ogg, oga, opus, aiff, aif, aifc, caf, w64, rf64, au, snd, mp3
  [2]
  $ host render tones.wav new.wav --preset swaped
  ! mirelon-host: unknown preset "swaped", the nearest is "swapped"
  [2]
  $ host render tones.wav new.wav --preset 11
  ! mirelon-host: no preset 11, they are numbered 0 to 10
  [2]
  $ host render tones.wav new.wav --set widht=3
  ! mirelon-host: unknown parameter "widht", the nearest is "width"
  [2]
  $ host render tones.wav new.wav --set gain=loud
  ! mirelon-host: "loud" is no value of gain: give what it shows, "-12.00" to "12.00", or a number from 0 to 1 with --set-normalised
  [2]
  $ host render tones.wav new.wav --set gain
  ! mirelon-host: "gain" is not NAME=VALUE
  [2]
  $ host render tones.wav new.wav --set gain=1000
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    new.wav (WAV, Signed 16 bit PCM)
  settings  gain 12.00 dB
  frames    6000 (0.14 s)
  speed     N x real time
  
    dBFS     L peak     L RMS     R peak     R RMS    width  balance   correl
    before    -11.21    -14.22     -13.39    -16.41   +0.001   -0.091   +0.003
    after       0.79     -2.22      -1.39     -4.41   +0.001   -0.091   +0.003
  
    width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.
    Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole file.
  
    1602 samples were beyond full scale and are clipped in the output
  ! mirelon-host: warning: "1000" is beyond the range of gain, taken as gain 12.00 dB
  ! mirelon-host: warning: new.wav: 1602 samples are beyond full scale, the highest by 0.79 dB; --headroom 0.8 or --bits float keeps them whole
  $ host render tones.wav new2.wav --set-normalised gain=2
  ! mirelon-host: "2" is no normalised value of gain: give a number from 0 to 1
  [2]
  $ host render tones.wav new2.wav --automate gain=3
  ! mirelon-host: "3" is not NAME=FIRST:LAST
  [2]
  $ host render tones.wav new2.wav --block 0
  ! mirelon-host: --block: Value 0 not in range 1 to 1048576 (--help shows how)
  [2]
  $ host render tones.wav new2.wav --bits 12
  ! mirelon-host: --bits: 12 not in {8,16,24,32,float,double} (--help shows how)
  [2]
  $ host render tones.wav new2.mp3 --bits 24
  ! mirelon-host: new2.mp3: MPEG-1/2 Audio does not take samples of 24 bits
  [2]
  $ host render tones.wav new2.wav --plugin crash.so
  input     tones.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    new2.wav (WAV, Signed 16 bit PCM)
  settings  the plug-in's own
  frames    6000 (0.14 s)
  speed     N x real time
  
    dBFS     L peak     L RMS     R peak     R RMS    width  balance   correl
    before    -11.21    -14.22     -13.39    -16.41   +0.001   -0.091   +0.003
    after     -11.21    -14.22     -13.39    -16.41   +0.001   -0.091   +0.003
  
    width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.
    Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole file.
  $ host render short.wav new3.wav
  input     short.wav (WAV, Signed 16 bit PCM, 44100 Hz, stereo)
  output    new3.wav (WAV, Signed 16 bit PCM)
  settings  the plug-in's own
  frames    2489 (0.06 s)
  speed     N x real time
  
    dBFS     L peak     L RMS     R peak     R RMS    width  balance   correl
    before    -11.21    -14.21     -13.39    -16.37   -0.002   -0.090   -0.005
    after     -11.21    -14.21     -13.39    -16.37   -0.002   -0.090   -0.005
  
    width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.
    Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole file.
  ! mirelon-host: warning: short.wav: cut short: 0.08 s (3511 frames) of 0.14 s cannot be read
  [3]
  $ host render short.wav new4.wav --strict
  ! mirelon-host: short.wav: cut short: 0.08 s (3511 frames) of 0.14 s cannot be read
  [2]
  $ host compare tones.wav missing.wav
  ! mirelon-host: missing.wav: cannot be read (No such file or directory)
  [2]
  $ host compare tones.wav mono.wav
  tones.wav and mono.wav: different
    length      6000 and 3000 frames
    first       frame 1 (0.000 s)
    frames      5999 differ
    difference  peak -6.21 dBFS, RMS -15.13 dBFS
  [1]
  $ host compare tones.wav empty.wav
  tones.wav and empty.wav: different
    length      6000 and 0 frames
    first       frame 0 (0.000 s)
    frames      6000 differ
    difference  peak -inf dBFS, RMS -inf dBFS
  [1]
  $ host plot tones.wav picture.jpg
  ! mirelon-host: picture.jpg: the picture is a PNG file, its name ends in .png
  [2]
  $ host plot tones.wav picture.png
  picture.png: tones.wav before and after
  $ host plot - picture.png <tones.wav
  ! mirelon-host: a picture takes two runs through IN, standard input has but one
  [2]
  $ host plot tones.wav picture.png <&-
  picture.png: tones.wav before and after
