; Waltz for two plucked strings: the orchestra. Its notes stand in waltz.sco.
; Render the pair with the preset   $CSOUND$ -d -W -o $WAVE$ $ORCHESTRA$ $SCORE$
sr     = 44100
ksmps  = 64
nchnls = 2
0dbfs  = 1

#define BODY(SIGNAL) #butterbp($SIGNAL, 220, 160) * 0.4 + $SIGNAL#

gaDelay init 0

; One plucked string. A string that is plucked softly is also duller.
;   p4  level       0 to 1
;   p5  pitch       octave.pitch class, 8.00 is middle c
;   p6  place       0 left, 1 right
instr 1
  iFreq   =       cpspch(p5)
  aString pluck   p4, iFreq, iFreq, 0, 1
  aSoft   tone    aString, 1200 + 5000 * p4
  aPluck  =       $BODY(aSoft)
  aDamp   linsegr 1, p3, 1, 0.08, 0
  aPluck  =       aPluck * aDamp
          outs    aPluck * (1 - p6), aPluck * p6
  gaDelay =       gaDelay + aPluck * 0.2
endin

; The echo of the yard: one repeat on each side, a third of a bar apart.
;   p4  feedback    below 1
instr 90
  aLeft   init    0
  aLeft   delay   gaDelay + aLeft * p4, 0.37
  aRight  delay   aLeft, 0.37
          outs    aLeft * 0.5, aRight * 0.5
  gaDelay =       0
endin
