# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""The bench's songs: known parts, rendered from Debian packages with fixed seeds, in sets; those that are held out share no source with
the one for tuning."""
import glob
import hashlib
import os
import subprocess
import tempfile
from typing import NamedTuple

import numpy as np

import composer
import midi
from players import Loop, Patches, Sampler, SoundFont, drum_kit
from singing import Singer
from sound import RATE, driven, equalised, fitted, levelled, load, placed, reverberated, save

SECONDS = 30
PARTS = ("guitar", "vocals", "piano", "bass", "drums", "rest")
LEVELS = {"guitar": -21, "vocals": -17, "piano": -22, "bass": -19.5, "drums": -18, "rest": -24}

HYDROGEN = "/usr/share/hydrogen/data/drumkits/"
SONIC_PI = "/usr/share/sonic-pi/samples/"
LMMS = "/usr/share/lmms/samples/"
FRETS = "/usr/share/games/fretsonfire/data/songs/"


class SongSet(NamedTuple):
    """What the songs of a set are made of."""
    fonts: dict  # name: player
    kits: list  # folders of drum kits and sound fonts of drums
    voices: list  # patterns of recordings, or voices of speech synthesizers
    scores: str  # a data file of Freedoom, or a folder of scores
    songs: list


class Plan(NamedTuple):
    """One song. `seats` are the pans of guitar and piano; a guitar at 2 is played twice, on both sides."""
    name: str
    kind: str
    seed: int
    seats: tuple = (0.0, 0.0)
    without: tuple = ()
    mono: bool = False
    detail: object = None
    seconds: int = SECONDS


def _font(name):
    return lambda: SoundFont(f"/usr/share/sounds/{name}", is_kit="_LV2" in name)


TUNING = SongSet(
    fonts={"fluid": _font("sf2/FluidR3_GM.sf2"), "musescore": _font("sf3/MuseScore_General_Full.sf3"), "csound": _font("sf2/sf_GMbank.sf2")},
    kits=["sf2/FluidR3_GM.sf2", "sf3/MuseScore_General_Full.sf3", "sf2/Black_Pearl_4_LV2.sf2", HYDROGEN + "ForzeeStereo", HYDROGEN + "Audiophob", HYDROGEN + "Millo_MultiLayered2"],
    voices=["/usr/share/klettres/fr/*/*.ogg", "/usr/share/klettres/lt/*/*.ogg", "/usr/share/klettres/en_GB/*/*.ogg",
            "/usr/share/klettres/tn/*/*.ogg", "flite:rms", "flite:slt"],
    scores="/usr/share/games/doom/freedoom1.wad",
    songs=[
        Plan("t01", "written", 1, (0.6, -0.6)), Plan("t02", "written", 2, (-0.8, 0.3)), Plan("t03", "written", 3, (0.0, 0.0)),
        Plan("t04", "written", 4, (0.3, 0.7), ("piano",)), Plan("t05", "written", 5, (2, 0.0)), Plan("t06", "written", 6, (-0.4, -0.5), ("drums",)),
        Plan("t07", "score", 7, (0.7, -0.3), detail=("D_E2M3", 270)), Plan("t08", "score", 8, (2, 0.0), detail=("D_E1M3", 105)),
        Plan("t09", "score", 9, (-0.5, 0.5), detail=("D_E1M7", 30)), Plan("t10", "written", 10, (0.0, 0.0), mono=True),
        Plan("t11", "loops", 11, (0.5, -0.6), detail=("loop_amen_full", "loop_compus", "loop_mika")),
        Plan("t12", "loops", 12, (-0.2, 0.4), ("vocals",), detail=("loop_breakbeat", "loop_garzul", "loop_electric")),
        Plan("t13", "written", 13, (0.9, 0.0), ("bass",)), Plan("t14", "written", 14, (0.0, -0.9), ("guitar",)),
        Plan("t15", "take", 15, detail=("sectoid/Feelings", 60)), Plan("t16", "take", 16, detail=("sectoid/War of freedom", 60)),
    ])

HELD_OUT = SongSet(
    fonts={"tim": _font("sf2/TimGM6mb.sf2"), "freepats": lambda: Patches("/etc/timidity/freepats.cfg")},
    kits=["sf2/TimGM6mb.sf2", "sf2/Red_Zeppelin_4_LV2.sf2", HYDROGEN + "BJA_Pacific", HYDROGEN + "ColomboAcousticDrumkit", HYDROGEN + "HardElectro1", HYDROGEN + "The Black Pearl 1.0"],
    voices=["/usr/share/klettres/it/*/*.ogg", "/usr/share/klettres/ru/*/*.ogg", "/usr/share/klettres/pt_BR/*/*.ogg",
            "/usr/share/klettres/nl/*/*.ogg", "festival:lp_diphone", "festival:hy_fi_mv_diphone"],
    scores="/usr/share/games/doom/freedoom2.wad",
    songs=[
        Plan("h01", "written", 101, (-0.6, 0.6)), Plan("h02", "written", 102, (0.4, -0.8)), Plan("h03", "written", 103, (0.0, 0.0)),
        Plan("h04", "written", 104, (-0.7, -0.2), ("vocals",)), Plan("h05", "written", 105, (2, 0.0)), Plan("h06", "written", 106, (0.5, 0.6), ("bass",)),
        Plan("h07", "score", 107, (-0.6, 0.4), detail=("D_ROMERO", 420)), Plan("h08", "score", 108, (2, 0.0), detail=("D_DDTBL2", 60)),
        Plan("h09", "score", 109, (0.5, -0.5), detail=("D_RUNNIN", 30)), Plan("h10", "written", 110, (0.0, 0.0), mono=True),
        Plan("h11", "loops", 111, (-0.5, 0.6), detail=("break01", "techno_bass01", "house_loop01")),
        Plan("h12", "loops", 112, (0.2, -0.4), ("piano",), detail=("jungle01", "briff01", "break03")),
        Plan("h13", "written", 113, (0.0, 0.9), ("drums",)), Plan("h14", "written", 114, (-0.9, 0.0), ("guitar",)),
        Plan("h15", "take", 115, detail=("muldjord/armygeddon", 60)), Plan("h16", "take", 116, detail=("muldjord/chaos_god", 60)),
    ])
SECOND = SongSet(
    fonts=HELD_OUT.fonts,
    kits=["sf2/TimGM6mb.sf2", HYDROGEN + "rumpf_kit_z01_h2", HYDROGEN + "ElectricEmpireKit", HYDROGEN + "VariBreaks"],
    voices=["/usr/share/klettres/de/*/*.ogg", "/usr/share/klettres/es/*/*.ogg", "/usr/share/klettres/uk/*/*.ogg",
            "/usr/share/klettres/hu/*/*.ogg", "festival:suo_fi_lj_diphone"],
    scores="/usr/share/games/doom/freedoom2.wad",
    songs=[
        Plan("s01", "written", 201, (0.5, -0.7)), Plan("s02", "written", 202, (-0.3, 0.8)), Plan("s03", "written", 203, (0.0, 0.0)),
        Plan("s04", "written", 204, (0.6, 0.2), ("vocals",)), Plan("s05", "written", 205, (2, 0.0)), Plan("s06", "written", 206, (-0.5, -0.6), ("bass",)),
        Plan("s07", "score", 207, (0.5, -0.4), detail=("D_DOOM", 30)), Plan("s08", "score", 208, (2, 0.0), detail=("D_MESSAG", 30)),
        Plan("s09", "score", 209, (-0.4, 0.5), detail=("D_TENSE", 30)), Plan("s10", "written", 210, (0.0, 0.0), mono=True),
        Plan("s11", "loops", 211, (0.6, -0.5), detail=("break02", "basses/rave_bass01", "electro_beat01")),
        Plan("s12", "loops", 212, (-0.3, 0.3), ("piano",), detail=("909beat01", "tb303_01", "rave_hihat01")),
        Plan("s13", "written", 213, (0.8, 0.0), ("drums",)), Plan("s14", "written", 214, (0.0, 0.9), ("guitar",)),
        Plan("s15", "take", 215, detail=("muldjord/internal_degeneration", 60)), Plan("s16", "take", 216, detail=("muldjord/mutilated_mime", 60)),
    ])
THIRD = SongSet(
    fonts={"opl3": _font("sf2/OPL-3_FM_128M.sf2"), **HELD_OUT.fonts},
    kits=["sf2/OPL-3_FM_128M.sf2", HYDROGEN + "GMRockKit", HYDROGEN + "TR808EmulationKit", HYDROGEN + "Millo-Drums_v.1"],
    voices=["/usr/share/klettres/cs/*/*.ogg", "/usr/share/klettres/da/*/*.ogg", "/usr/share/klettres/he/*/*.ogg", "/usr/share/klettres/nb/*/*.ogg",
            "festival:czech_dita", "festival:czech_machac", "festival:pc_diphone"],
    scores="/usr/share/games/openttd/baseset/openmsx",
    songs=[
        Plan("n01", "written", 301, (-0.5, 0.5)), Plan("n02", "written", 302, (0.7, -0.3)), Plan("n03", "written", 303, (0.0, 0.0)),
        Plan("n04", "written", 304, (-0.3, -0.7), ("vocals",)), Plan("n05", "written", 305, (2, 0.0)), Plan("n06", "written", 306, (0.4, 0.5), ("bass",)),
        Plan("n07", "score", 307, (-0.5, 0.5), detail=("keep_on_rolling", 30)), Plan("n08", "score", 308, (2, 0.0), detail=("mighty_giant_run", 30)),
        Plan("n09", "score", 309, (0.4, -0.6), detail=("tttheme2", 30)), Plan("n10", "written", 310, (0.0, 0.0), mono=True),
        Plan("n11", "loops", 311, (-0.6, 0.5), detail=("electro_beat02", "techno_bass02", "rave_hihat02")),
        Plan("n12", "loops", 312, (0.3, -0.3), ("piano",), detail=("loop_mehackit1", "bassloops/rave_bass02", "loop_perc1")),
        Plan("n13", "loops", 313, (0.4, -0.5), ("drums",), detail=("loop_tabla", "bassloops/rave_bass01", "loop_safari")),
        Plan("n14", "score", 314, (0.3, 0.0), detail=("chemistry_lab", 30)), Plan("n15", "written", 315, (-0.8, 0.0), ("drums",)),
        Plan("n16", "written", 316, (0.0, -0.8), ("guitar",)),
    ])
SPARSE = SongSet({}, [], [], "", [Plan(f"p{number:02}", "sparse", 0, detail=detail) for number, detail in enumerate([
    ("held-out/h01", "guitar"), ("held-out-2/s02", "guitar"), ("held-out-3/n03", "guitar"), ("held-out/h05", "piano"),
    ("held-out-2/s10", "piano"), ("held-out-3/n05", "piano"), ("held-out/h06", "vocals"), ("held-out-2/s07", "bass"),
    ("held-out-3/n02", "drums"), ("held-out/h02", "guitar", "vocals"), ("held-out-2/s03", "guitar", "vocals"), ("held-out-3/n09", "piano", "vocals"),
    ("held-out-2/s05", "piano", "vocals"), ("held-out/h10", "bass", "drums"), ("held-out/h07", "guitar", "bass", "drums"),
    ("held-out-3/n16", "piano", "bass", "drums")], 1)])
SETS = {"tuning": TUNING, "held-out": HELD_OUT, "held-out-2": SECOND, "held-out-3": THIRD, "sparse": SPARSE}

SAMPLERS = {  # key: file of recorded single tones, by set
    "tuning": {"guitar": {64: SONIC_PI + "guit_em9.flac"}, "piano": {60: SONIC_PI + "ambi_piano.flac"},
               "bass": {36: SONIC_PI + "bass_woodsy_c.flac"}, "rest": {60: SONIC_PI + "ambi_choir.flac"}},
    "held-out": {"guitar": {52: LMMS + "instruments/steel_guitar01.ogg"}, "piano": {60: LMMS + "instruments/piano02.ogg"},
                 "bass": {36: LMMS + "basses/bass01.ogg"}, "rest": {60: LMMS + "stringsnpads/strings01.ogg"}},
}
SAMPLERS["held-out-2"] = SAMPLERS["held-out"]
SAMPLERS["held-out-3"] = {"guitar": {52: LMMS + "instruments/steel_guitar_slight_distorted01.ogg"}, "piano": {60: LMMS + "instruments/e_piano_accord01.ogg"},
                          "bass": {36: LMMS + "basses/bass_hard01.ogg"}, "rest": {60: LMMS + "stringsnpads/orion_string01.ogg"}}
WORDS = ("love night fire heart away alone river dream morning shine forever home light under dancing tonight hold remember "
         "sky rain summer lonely moon silver believe stay young world roses whisper ocean alive yesterday water mountain golden").split()


class Cast:
    """The players of one set, loaded when they are needed first."""

    def __init__(self, name):
        self.set = SETS[name]
        self.samplers = SAMPLERS[name]
        self._loaded = {}

    def _once(self, key, make):
        if key not in self._loaded:
            self._loaded[key] = make()
        return self._loaded[key]

    def font(self, random):
        name = str(random.choice(list(self.set.fonts)))
        return self._once(name, self.set.fonts[name])

    def kit(self, random):
        name = str(random.choice(self.set.kits))
        return self._once(name, lambda: drum_kit(name) if name.startswith("/") else _font(name)())

    def singer(self, random):
        name = str(random.choice(self.set.voices))
        return self._once(name, lambda: singer(name, random))

    def sampler(self, part):
        return self._once("sampler " + part, lambda: Sampler(self.samplers[part]))


def speak(voice, text, path):
    """Has a speech synthesizer say something into a file."""
    program, name = voice.split(":")
    if program == "flite":
        subprocess.run(["flite", "-voice", name, "-t", text, "-o", path], check=True)
    else:
        subprocess.run(["text2wave", "-eval", f"(voice_{name})", "-o", path], input=text.encode(), check=True)


def singer(voice, random):
    """A singer with a recorded voice (a pattern of files) or with one that a speech synthesizer speaks."""
    if ":" not in voice:
        paths = sorted(glob.glob(voice))
        return Singer([paths[i] for i in random.permutation(len(paths))])
    with tempfile.TemporaryDirectory() as folder:
        paths = []
        for i in range(8):
            paths.append(os.path.join(folder, f"{i}.wav"))
            speak(voice, " ".join(random.choice(WORDS, 12)), paths[-1])
        return Singer(paths)


def sung(singer_, melody, seconds, random):
    """A melody by a singer; now and then with a second voice on the sides."""
    vibrato = random.uniform(0.1, 0.5)
    voice = singer_.sing(melody, seconds, random, vibrato)
    sound = np.stack([voice, voice])
    if random.random() < 0.2:
        second = singer_.sing(melody, seconds, random, vibrato)
        sound += np.stack([second * 0.7, second * 0.3])
    return sound


def twice(play, notes, song):
    """A part played twice, one take on each side."""
    takes = [play(song.played(notes)) for _ in range(2)]
    return placed(takes[0], -0.8, 0.5) + placed(takes[1], 0.8, 0.5)


GUITARS = {"power": [29, 30], "lead": [29, 30, 27], "chops": [27, 28], "muted": [28], "strum": [24, 25, 27], "arpeggio": [24, 25, 27],
           "comping": [24, 26], "offbeats": [27, 28]}


def written_parts(plan, cast, random):
    """The parts of a random song, each by a player of the cast."""
    song = composer.Song(plan.seed, plan.seconds)
    notes, way = composer.guitar(song)
    program, font = random.choice(GUITARS[way]), cast.font(random)
    strings = lambda played: font.play(played, plan.seconds, program)  # noqa: E731
    guitar = twice(strings, notes, song) if plan.seats[0] == 2 else strings(notes)
    if program in (26, 27) and random.random() < 0.3:
        guitar = driven(guitar, random.uniform(3, 20))
    singer_ = cast.singer(random)
    return {
        "guitar": guitar,
        "vocals": sung(singer_, composer.melody(song, singer_.key + int(random.integers(0, 7))), plan.seconds, random),
        "piano": cast.font(random).play(composer.piano(song), plan.seconds, random.choice([0, 0, 0, 1, 2, 4, 5])),
        "bass": cast.font(random).play(composer.bass(song), plan.seconds, random.choice([32, 33, 33, 34, 35, 36, 38])),
        "drums": cast.kit(random).play(composer.drums(song), plan.seconds, drums=True),
        "rest": cast.font(random).play(composer.others(song), plan.seconds, random.choice([16, 19, 21, 48, 40, 56, 73])),
    }


PROGRAMS = {"piano": range(0, 8), "guitar": range(24, 32), "bass": range(32, 40)}


def part_of(program):
    if program == midi.DRUMS:
        return "drums"
    return next((part for part, programs in PROGRAMS.items() if program in programs), "rest")


def score_parts(plan, cast, random):
    """The parts of an excerpt of a score that somebody wrote; one lead instrument is sung instead."""
    name, begin = plan.detail
    by_program = midi.notes_by_program(midi.score(cast.set.scores, name), begin, plan.seconds)
    parts = {part: np.zeros((2, plan.seconds * RATE), np.float32) for part in PROGRAMS}
    leads = [p for p in by_program if part_of(p) == "rest" and len(by_program[p]) > 12]
    if leads:
        lead = max(leads, key=lambda p: (p in (80, 81, 87), len(by_program[p])))
        singer_, melody = cast.singer(random), midi.one_at_a_time(by_program.pop(lead))
        shift = 12 * round((singer_.key + 4 - np.median([n.key for n in melody])) / 12)
        parts["vocals"] = sung(singer_, [n._replace(key=n.key + shift) for n in melody], plan.seconds, random)
    for program, notes in by_program.items():
        part = part_of(program)
        player = cast.kit(random) if part == "drums" else cast.font(random)
        take = player.play(notes, plan.seconds, max(program, 0), part == "drums")
        parts[part] = parts.get(part, 0) + take
    return parts


def found_sample(name):
    found = [path for folder in (SONIC_PI, LMMS) for path in sorted(glob.glob(f"{folder}**/{name}.*", recursive=True))]
    if len(found) != 1:
        raise SystemExit(f"Of the sample {name} there is not one: {found}.")
    return found[0]


def loop_parts(plan, cast, random):
    """Sampled loops of drums and bass, and single recorded tones played at other pitches."""
    song = composer.Song(plan.seed, plan.seconds)
    bar = 16 * song.sixteenth
    loops = [Loop(found_sample(name)).play(bar, plan.seconds) for name in plan.detail]
    singer_ = cast.singer(random)
    parts = {
        "drums": loops[0] + 0.4 * loops[2],
        "bass": cast.sampler("bass").play(composer.bass(song), plan.seconds) if cast.set is TUNING else loops[1],
        "vocals": sung(singer_, composer.melody(song, singer_.key + int(random.integers(0, 7))), plan.seconds, random),
        "guitar": cast.sampler("guitar").play(composer.guitar(song)[0], plan.seconds),
        "piano": cast.sampler("piano").play(composer.piano(song), plan.seconds),
    }
    return {**parts, "rest": loops[1] if cast.set is TUNING else cast.sampler("rest").play(composer.others(song), plan.seconds)}


def take_parts(plan):
    """A recording of musicians, of which only the guitar is known by itself."""
    folder, begin = plan.detail
    cut = slice(begin * RATE, (begin + plan.seconds) * RATE)
    return {"guitar": load(f"{FRETS}{folder}/guitar.ogg")[:, cut], "rest": load(f"{FRETS}{folder}/song.ogg")[:, cut]}


def mixed_down(parts, plan, random):
    """The parts as they stand in the mix: tone, room, place, level."""
    pans = {"guitar": plan.seats[0], "piano": plan.seats[1], "rest": random.uniform(-0.5, 0.5)}
    for part in sorted(parts):
        sound = equalised(parts[part], 5, random)
        if part != "bass" and random.random() < 0.7:
            sound = reverberated(levelled(sound, -20), random.uniform(-22, -9), random.uniform(0.4, 1.8), random)
        pan = pans.get(part, random.normal(0, 0.03))
        width = 0.2 if part == "bass" else random.uniform(0.2, 1.1)
        sound = sound if pan == 2 else placed(sound, pan, width)
        parts[part] = levelled(sound, LEVELS[part] + random.normal(0, 2))
    return parts


def played_parts(plan, cast):
    """The parts of a song that play in it, at the levels that they have in its mix."""
    random = np.random.default_rng(plan.seed)
    if plan.kind == "take":
        parts = take_parts(plan)
    else:
        maker = {"written": written_parts, "score": score_parts, "loops": loop_parts}[plan.kind]
        parts = {part: sound for part, sound in maker(plan, cast, random).items() if part not in plan.without and np.abs(sound).max() > 1e-4}
        parts = mixed_down(parts, plan, random)
    if plan.mono:
        return {part: np.repeat(sound.mean(0, keepdims=True), 2, axis=0) for part, sound in parts.items()}
    return parts


def sparse_parts(plan, folder):
    """A few of the parts of a song of another set."""
    song, *parts = plan.detail
    return {part: load(os.path.join(folder, song, part + ".wav")) for part in parts}


def make(plan, cast, folder):
    """The parts of a song that play in it, as they stand in its mix; `folder` holds the other sets."""
    parts = sparse_parts(plan, folder) if plan.kind == "sparse" else played_parts(plan, cast)
    peak = np.abs(sum(parts.values())).max()
    return {part: fitted(sound * (0.9 / peak), plan.seconds * RATE) for part, sound in parts.items()}


def check(folder, name):
    """Ends the script where a song of a set is not the one that songs.sha256 lists."""
    with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "songs.sha256")) as file:
        listed = {path: digest for digest, path in (line.split() for line in file)}
    for plan in SETS[name].songs:
        path = f"{name}/{plan.name}/mix.wav"
        with open(os.path.join(folder, path), "rb") as file:
            if hashlib.file_digest(file, "sha256").hexdigest() != listed.get(path):
                raise SystemExit(f"{path} is not the song that songs.sha256 lists: its scores cannot be compared with others.")


def render(folder, name):
    """Writes mix.wav and a WAV file for each part that plays into FOLDER/SET/SONG. All songs of a set or none: what a player
    has played before may change how it plays."""
    if not all(os.path.exists(os.path.join(folder, name, plan.name, "mix.wav")) for plan in SETS[name].songs):
        for plan in SPARSE.songs if name == "sparse" else ():
            render(folder, plan.detail[0].split("/")[0])
        cast = None if name == "sparse" else Cast(name)
        for plan in SETS[name].songs:
            write(os.path.join(folder, name, plan.name), make(plan, cast, folder))
            print(plan.name, plan.kind, flush=True)
    check(folder, name)


def write(place, parts):
    os.makedirs(place, exist_ok=True)
    for part, sound in parts.items():
        save(os.path.join(place, part + ".wav"), sound, "FLOAT")
    save(os.path.join(place, "mix.wav"), sum(parts.values()))
