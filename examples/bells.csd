<CsoundSynthesizer>
<CsInstruments>
; Bells over water: a slow peal of FM bells in a large room.
; Render it with the preset   $CSOUND$ -d -W -o $WAVE$ $DOCUMENT$

sr     = 44100
ksmps  = 32
nchnls = 2
0dbfs  = 1

gaRoomL init 0                          ; what the bells send to the room
gaRoomR init 0

giSine  ftgen 1, 0, 16384, 10, 1

; Inharmonic partials make a bell: the modulator's ratio is no whole number,
; and the brightness (the index) dies away before the tone does.
instr Bell              ; p4 level, p5 pitch (octave.pitch class), p6 place 0-1
  iFreq   =      cpspch(p5)
  iRatio  =      1.414
  kIndex  expon  4, p3, 0.05
  kLevel  expon  p4, p3, p4 * 0.001
  aStrike linseg 0, 0.004, 1, p3 - 0.004, 1
  aTone   foscili kLevel, iFreq, 1, iRatio, kIndex, giSine
  aHum    oscili  kLevel * 0.4, iFreq * 0.5, giSine
  aBell   =      (aTone + aHum) * aStrike
  aLeft   =      aBell * sqrt(1 - p6)
  aRight  =      aBell * sqrt(p6)
          outs   aLeft, aRight
  gaRoomL =      gaRoomL + aLeft * 0.35
  gaRoomR =      gaRoomR + aRight * 0.35
endin

; The water: filtered noise that swells twice.
instr Water             ; p4 level
  kSwell  oscili 0.5, 2 / p3, giSine, 0.75
  aNoise  rand   p4
  aLow    butterlp aNoise, 500 + 400 * kSwell
  aWater  =      aLow * (0.5 + kSwell)
  aFade   linseg 0, 2, 1, p3 - 4, 1, 2, 0
          outs   aWater * aFade, aWater * aFade
endin

instr Room
  aLeft, aRight reverbsc gaRoomL, gaRoomR, 0.86, 9000
  outs    aLeft, aRight
  gaRoomL = 0
  gaRoomR = 0
endin
</CsInstruments>
<CsScore>
t 0 72

i "Room"  0 18
i "Water" 0 16 0.12

;        start  dur  level  pitch  place
i "Bell"   0     7   0.22    7.07   0.35
i "Bell"   1.5   6   0.18    8.02   0.70
i "Bell"   2.5   6   0.15    8.05   0.50
i "Bell"   4     7   0.20    7.10   0.25
i "Bell"   5.5   6   0.16    8.07   0.80
i "Bell"   6.5   5   0.12    9.00   0.60
i "Bell"   8     8   0.22    7.03   0.40
i "Bell"   9.5   6   0.15    8.05   0.65
i "Bell"  10.5   6   0.13    8.10   0.30
i "Bell"  12     6   0.20    7.07   0.50
e
</CsScore>
</CsoundSynthesizer>
