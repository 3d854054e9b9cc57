"""Music by formula: one four-bar loop each for drums, bass and chords as expressions of ffmpeg's aevalsrc, and how they
come and go over a track. Everything follows from the tempo, the key and the style, so that a track is always the same."""

# Semitones above the tonic on which the chords of the four bars stand, and whether each is minor.
PROGRESSIONS = {
    'minor': ((0, True), (8, False), (3, False), (10, False)),
    'major': ((0, False), (9, True), (5, False), (7, False)),
}
# Camelot number of C minor is 5, of C major 8; each further number lies a fifth higher.
CAMELOT_OF_C = {'A': 5, 'B': 8}
# Sixteenths of a bar on which each drum sounds.
GROOVES = {
    'house': {'kick': (0, 4, 8, 12), 'snare': (4, 12), 'hat': (2, 6, 10, 14)},
    'broken': {'kick': (0, 10), 'snare': (4, 12), 'hat': (0, 2, 4, 6, 8, 10, 12, 14)},
    'slow': {'kick': (0, 7, 10), 'snare': (4, 12), 'hat': (0, 2, 4, 6, 8, 10, 12, 14)},
}
ARPEGGIO = (0, 2, 1, 3, 2, 1, 3, 1)  # notes of the chord, one per eighth


def tonic_and_mode(camelot):
    """Semitones of the tonic above C, and the mode, of a code such as "8A"."""
    letter = camelot[-1]
    return (int(camelot[:-1]) - CAMELOT_OF_C[letter]) * 7 % 12, 'minor' if letter == 'A' else 'major'


def frequency(semitones_above_c, octave):
    return 440.0 * 2 ** ((semitones_above_c - 9) / 12 + octave - 4)


def by_index(index, values):
    """An expression that picks a value by a whole-numbered expression."""
    expression = f'{values[-1]:.4f}'
    for place in range(len(values) - 2, -1, -1):
        expression = f'if(lt({index},{place + 1}),{values[place]:.4f},{expression})'
    return expression


def hits(steps, bar, sound):
    """The sum of a sound over its places in a bar; the sound's time since the hit stands as X."""
    return '+'.join(sound.replace('X', f'mod(t+{bar - step * bar / 16:.6f},{bar:.6f})') for step in steps)


class Loop:
    """Four bars at a tempo in a key."""

    def __init__(self, tempo, camelot, style, has_arpeggio):
        self.bar = 240.0 / tempo
        self.groove = GROOVES[style]
        self.has_arpeggio = has_arpeggio
        tonic, mode = tonic_and_mode(camelot)
        self.chords = [[tonic + root + note for note in ((0, 3, 7, 12) if is_minor else (0, 4, 7, 12))]
                       for root, is_minor in PROGRESSIONS[mode]]
        self.bar_index = f'floor(t/{self.bar:.6f})'

    def drums(self):
        kick = '0.9*sin(2*PI*(47*X+2.8*(1-exp(-32*X))))*exp(-8*X)'
        noise = 'st(0,2*random(5)-1)*0'
        # The difference of neighbouring noise samples is bright, the noise itself is not.
        hat = '0.22*(ld(0)-ld(1))*exp(-55*X)'
        snare = '(0.3*ld(0)+0.25*sin(2*PI*190*X))*exp(-17*X)'
        return (f'{noise}+{hits(self.groove["kick"], self.bar, kick)}+{hits(self.groove["snare"], self.bar, snare)}'
                f'+{hits(self.groove["hat"], self.bar, hat)}+st(1,ld(0))*0')

    def bass(self):
        eighth = self.bar / 8
        roots = [frequency(chord[0], 2 if chord[0] % 12 < 7 else 1) for chord in self.chords]
        # Offbeat notes; the octave on each last one.
        step = f'mod(floor(t/{eighth:.6f}),8)'
        phase = 'ld(2)*ld(3)'
        return (f'st(2,2*PI*{by_index(self.bar_index, roots)}*if(eq({step},7),2,1))*0+st(3,mod(t,{eighth:.6f}))*0'
                f'+0.4*(sin({phase})+0.4*sin(2*{phase})+0.2*sin(3*{phase}))'
                f'*min(1,ld(3)*150)*exp(-5*ld(3))*if(mod({step},2),1,0.35)')

    def chord_voice(self, detune):
        beat = self.bar / 4
        voices = '+'.join(f'sin(2*PI*t*{detune + place * 0.0007:.4f}*{by_index(self.bar_index, notes)})'
                          for place, notes in enumerate([[frequency(chord[n], 4) for chord in self.chords] for n in range(3)]))
        swell = f'min(1,mod(t,{self.bar:.6f})*12)*min(1,({self.bar:.6f}-mod(t,{self.bar:.6f}))*12)'
        pumping = f'(1-0.75*exp(-7*mod(t,{beat:.6f})))'
        expression = f'0.11*({voices})*{swell}*{pumping}'
        if self.has_arpeggio:
            expression += f'+{self.arpeggio(detune)}'
        return expression

    def arpeggio(self, detune):
        eighth = self.bar / 8
        notes = [frequency(chord[note], 5) for chord in self.chords for note in ARPEGGIO]
        since = f'mod(t,{eighth:.6f})'
        step = f'mod(floor(t/{eighth:.6f}),8)'
        per_bar = [by_index(step, notes[8 * bar:8 * bar + 8]) for bar in range(4)]
        pitch = per_bar[3]
        for bar in (2, 1, 0):
            pitch = f'if(lt({self.bar_index},{bar + 1}),{per_bar[bar]},{pitch})'
        return f'0.13*sin(2*PI*{since}*{detune:.4f}*{pitch})*exp(-9*{since})'


def filter_graph(loop, seconds, rate):
    """A filter graph with the output [music]: an opening of drums alone, everything, a break without drums, everything."""
    bar_samples = round(loop.bar * rate)
    bars = seconds / loop.bar
    opening = loop.bar * max(1, round(bars * 0.12))
    pause = loop.bar * round(bars * 0.5)
    after_pause = pause + loop.bar * max(2, round(bars * 0.14))

    def stem(name, expressions, loop_bars, silences):
        gates = ''.join(f",volume=0:enable='between(t,{start:.4f},{end:.4f})'" for start, end in silences)
        source = f"aevalsrc=exprs='{'|'.join(expressions)}':s={rate}:d={loop_bars * loop.bar + 0.01:.6f}"
        return f'{source},aformat=channel_layouts=stereo,aloop=loop=-1:size={loop_bars * bar_samples}{gates}[{name}]'

    return ';'.join([
        stem('drums', [loop.drums()], 1, [(pause, after_pause)]),
        stem('bass', [loop.bass()], 4, [(0, opening), (pause, after_pause)]),
        stem('chords', [loop.chord_voice(0.9985), loop.chord_voice(1.0015)], 4, [(0, opening / 2)]),
        f'[drums][bass][chords]amix=inputs=3:normalize=0,atrim=duration={seconds},alimiter=limit=0.9:level=disabled,'
        f'afade=t=out:st={seconds - 1.5}:d=1.5[music]',
    ])
