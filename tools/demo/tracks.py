"""The sample tracks: all names and titles are invented. Most are as a shop would deliver them; the rest show what a folder
of a working DJ really holds: no tags, odd names, junk in titles, broken files."""
from dataclasses import dataclass, field

POOL = 'Pool 2026-11'
SETS = 'Sets/Закрытие сезона'
INBOX = 'Inbox'
ARCHIVE = 'Архив'


@dataclass
class Sample:
    """One audio file."""
    folder: str
    name: str  # without extension; may be decomposed on disk, see make_demo.py
    kind: str  # a key of make_demo.ENCODINGS
    tempo: float
    key: str  # Camelot code
    seconds: int
    style: str = 'house'
    tags: dict = field(default_factory=dict)  # in ffmpeg's generic names; without title and artist the file has no tags
    cover: tuple = ()  # two colours of a gradient, or nothing
    cover_size: int = 600


def tags(artist, title, genre, year='2026', **others):
    return {'artist': artist, 'title': title, 'genre': genre, 'date': year, **others}


SAMPLES = [
    # A delivery of this month, well tagged.
    Sample(POOL, 'Nadia Volk - Мираж в песках', 'flac', 122, '8A', 36,
           tags=tags('Nadia Volk', 'Мираж в песках', 'Afro House', album='#WARM UP', bpm='122', key='8A', track='1'),
           cover=('#7a5a1e', '#2f8fbf')),
    Sample(POOL, 'Kollektor - Night Bus (Extended Mix)', 'mp3-320', 127, '10B', 44,
           tags=tags('Kollektor', 'Night Bus (Extended Mix)', 'Tech House', album='#PRIMETIME', key='10B', track='2',
                     comment='afterparty'),
           cover=('#7b35c4', '#1f7a38')),
    Sample(POOL, 'Лев Орлов - Вечер на Петроградской', 'mp3-320', 118, '5A', 40,
           tags=tags('Лев Орлов', 'Вечер на Петроградской', 'Indie Dance', album='#PRIMETIME', bpm='118', key='5A', track='3',
                     comment='preparty'),
           cover=('#c03870', '#20287a')),
    Sample(POOL, 'Ivory Static - Salt & Chrome', 'flac24', 124, '4A', 34,
           tags=tags('Ivory Static', 'Salt & Chrome', 'Melodic House & Techno', album='#WARM UP', bpm='124', key='4A'),
           cover=('#bf9338', '#7a1e4a'), cover_size=1500),
    Sample(POOL, 'Анна Рай feat. Мята - Дыши', 'm4a', 104, '2B', 38, style='slow',
           tags=tags('Анна Рай feat. Мята', 'Дыши', 'Pop', album='Дыши', bpm='104', track='1/4')),
    Sample(POOL, 'Juno Park - Paper Lanterns (VIP Mix)', 'mp3-320', 121, '9A', 42,
           tags=tags('Juno Park', 'Paper Lanterns (VIP Mix)', 'Deep House', album='#PRIMETIME', key='9A'),
           cover=('#1e7a60', '#38bfb0')),
    Sample(POOL, 'Tamarind - Low Sun', 'aiff', 123, '11A', 30,
           tags=tags('Tamarind', 'Low Sun', 'Afro Tech', bpm='123', key='11A'), cover=('#46207a', '#3838bf')),
    Sample(POOL, 'Северный Ветер - Красный поезд', 'mp3-v0', 126, '7B', 46,
           tags=tags('Северный Ветер', 'Красный поезд', 'House', bpm='126', key='7B'), cover=('#7a2020', '#bf35a8')),
    Sample(POOL, 'Mira Tol - 5 утра 🌅', 'mp3-320', 125, '3B', 30,
           tags=tags('Mira Tol', '5 утра 🌅', 'Progressive House', comment='🔥 closing'), cover=('#f0a04b', '#5a3a8a')),
    # A set, older, of several makers.
    Sample(SETS, 'Marlo Vey - Second Skin', 'mp3-320', 124, '1A', 36,
           tags=tags('Marlo Vey', 'Second Skin', 'Progressive House', '2025', bpm='124', key='1A'),
           cover=('#bf5a30', '#4a7a1e')),
    Sample(SETS, 'Ost & Rien - Glass Harbour (Club Edit)', 'flac', 134, '3A', 32,
           tags=tags('Ost & Rien', 'Glass Harbour (Club Edit)', 'Techno', '2025', key='3A'), cover=('#8fbf38', '#1e667a')),
    Sample(SETS, 'DJ Калина - Лето не спит', 'mp3-v2', 116, '12B', 44,
           tags=tags('DJ Калина', 'Лето не спит', 'Disco', '2024', bpm='116,0', key='12B'), cover=('#35c48a', '#6b1e7a')),
    Sample(SETS, 'Reza Kade - Untold', 'm4a', 120, '6A', 38,
           tags=tags('Reza Kade', 'Untold', 'Afro House', '2025', bpm='120', comment='prime'), cover=('#3868bf', '#7a481e')),
    Sample(SETS, 'Tin Orchard - Half Step', 'mp3-192', 86, '4A', 30, style='slow',
           tags=tags('Tin Orchard', 'Half Step', 'Hip-Hop', '2023', bpm='86', key='F minor'), cover=('#333a44', '#c0c4cc')),
    Sample(SETS, 'Wren & Ash - Overpass', 'mp3-320', 174, '2A', 28, style='broken',
           tags=tags('Wren & Ash', 'Overpass', 'Drum & Bass', '2024', bpm='174', key='2A'), cover=('#0d2b4d', '#f04f5a')),
    Sample(SETS, 'Оля Сон - Дождь (Intro)', 'wav', 72, '8B', 20, style='slow',
           tags=tags('Оля Сон', 'Дождь (Intro)', 'Ambient', '2022')),
    # Just downloaded: tags missing or spoilt.
    Sample(INBOX, '128 - 8A - Kollektor - Terminal Nine', 'mp3-320', 128, '8A', 32),
    Sample(INBOX, '03. Лев Орлов - Мосты (Original Mix)', 'mp3-128', 122, '6B', 30),
    Sample(INBOX, 'Juno_Park-Silk_Road-WEB-2026', 'mp3-320', 120, '9A', 26),
    Sample(INBOX, 'Йод и мёд - Тёплый лёд', 'mp3-v2', 110, '5B', 30, style='slow'),
    Sample(INBOX, 'tamarind - quiet river [promo.example]', 'mp3-320', 121, '10A', 28,
           tags=tags('TAMARIND', 'Quiet River [promo.example] - 121 - 10A', 'afro house'), cover=('#1d3b2f', '#e0c068')),
    Sample(INBOX, 'Untitled 04', 'aac', 126, '7A', 24,
           tags=tags('Reza Kade', 'Marble (free download)', 'TECH HOUSE', comment='www.promo.example')),
    Sample(INBOX, 'Marlo Vey - Red Line - 130 - 12A', 'wav', 130, '12A', 22),
    Sample(INBOX, '.Nadia Volk - Черновик', 'mp3-128', 122, '8A', 20),
    Sample(INBOX, 'Ivory Static — Night Ferry (feat. Mira Tol) 🚢', 'flac', 124, '1B', 26,
           tags=tags('Ivory Static', 'Night Ferry (feat. Mira Tol)', 'melodic house & techno', album_artist='Various')),
    # Kept for years.
    Sample(ARCHIVE, 'Северный Ветер - Старый причал', 'mp3-128', 98, '3B', 30, style='slow'),  # gets ID3v1 in Windows-1251
    Sample(ARCHIVE, 'Tin Orchard - Copper', 'aiff24', 92, '11B', 20, style='slow',
           tags=tags('Tin Orchard', 'Copper', 'Breakbeat', '2019')),
    Sample(ARCHIVE, 'Ost & Rien - Relay', 'mp3-192', 140, '5A', 30, style='broken',
           tags=tags('Ost & Rien', 'Relay', 'Electro', '2018', bpm='140.00', comment='ex (old) {vinyl rip}'),
           cover=('#202020', '#d0d0d0'), cover_size=300),
    Sample(ARCHIVE, 'Wren & Ash - Lowlands', 'alac', 168, '9B', 24, style='broken',
           tags=tags('Wren & Ash', 'Lowlands', 'Drum & Bass', '2020'), cover=('#2f4858', '#86bbd8')),
]

# What ID3v1 in an encoding of its time holds: title, artist, album, year, comment, number of the genre (7 is Hip-Hop).
WINDOWS_1251 = (f'{ARCHIVE}/Северный Ветер - Старый причал.mp3',
                ('Старый причал', 'Северный Ветер', 'Причалы', '2006', 'из архива', 7))
# Copy of a file under another name, which is the same to every search for duplicates.
DUPLICATE = (f'{POOL}/Kollektor - Night Bus (Extended Mix).mp3', f'{ARCHIVE}/night bus ext (copy 2).mp3')
# Cut off as by a full disk: the first part of a file.
TRUNCATED = (f'{SETS}/Ost & Rien - Glass Harbour (Club Edit).flac', f'{INBOX}/Glass Harbour (unfinished download).flac', 0.55)
# No audio at all.
EMPTY = f'{INBOX}/Пустой файл.mp3'
TEXT = (f'{INBOX}/Прочти меня.mp3', 'Это не музыка, а текст.\n')
COMPANION = (f'{INBOX}/._Untitled 04.aac', bytes.fromhex('00051607000200004d6163204f532058') + bytes(66))
# Stands decomposed on disk, as other systems write it.
DECOMPOSED = 'Йод и мёд - Тёплый лёд'
