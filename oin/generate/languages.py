"""The languages: number, tag, name, script byte, and the letters that they order their own way.

The letters are facts of the languages' alphabets, checked against CLDR 41. One item a letter, in
small letters; capitals and the cases of a contraction follow by themselves.

    ñ=n.1    its own primary: extension 1 of the slot of n
    å=@0     its own primary: the first place behind all Latin letters
    ґ>г      its own primary behind г; a second one behind the same letter follows the first
    ü~y      with y, told apart as by an accent
    aa~å     two letters that contract
    ş:ș      the same as ș
    ä&ae     sorts as two letters
    ccs+cs   sorts as cs cs
    ^ęė      these keep their accent numbers but in this order
    pinyin   ideographs in the order of ideographs.py; also: strokes, JIS
    kana     Japanese marks that repeat, as kana.py tells
    CLDR     in the place of all: the script's whole alphabet, laid out by the rules of CLDR, as
             layout.py and syllables.py tell
    I|ı      a capital with the small letter of another
"""

HU = 'cs=c.1 dz=d.1 dzs=d.2 gy=g.1 ly=l.1 ny=n.1 sz=s.1 ty=t.1 zs=z.1 ö=o.1 ő~ö ü=u.1 ű~ü ' \
     'ccs+cs ddz+dz ddzs+dzs ggy+gy lly+ly nny+ny ssz+sz tty+ty zzs+zs'
SV = 'å=@0 ä=@1 æ~ä ę~ä ö=@2 ø~ö ő~ö œ~ö ô~ö ü~y ű~y þ&th'
FI = 'å=@0 ä=@1 æ~ä ö=@2 ø~ö ü~y'
DA = 'æ=@0 ä~æ ø=@1 ö~ø ő~ø å=@2 aa~å ü~y ű~y þ&th'
NB = 'æ=@0 ä~æ ę~æ ø=@1 ö~ø ő~ø œ~ø å=@2 aa~å ü~y ű~y þ&th'
HR = 'č=c.1 ć=c.3 dž=d.1 ǆ:dž đ=d.2 lj=l.1 ǉ:lj nj=n.1 ǌ:nj š=s.1 ž=z.1'
TR = 'ç=c.1 ğ=g.1 ı=h.1 I|ı İ|i ö=o.1 ş=s.1 ü=u.1'
AZ = 'ç=c.1 ə=e.1 ğ=g.1 x=h.1 ı=h.3 I|ı İ|i q=k.1 ö=o.1 ş=s.1 ü=u.1 w=z.1'
VI = 'ă=a.1 â=a.3 đ=d.1 ê=e.1 ô=o.1 ơ=o.3 ư=u.1 ' \
     '^àảãáạ ^ằẳẵắặ ^ầẩẫấậ ^èẻẽéẹ ^ềểễếệ ^ìỉĩíị ^òỏõóọ ^ồổỗốộ ^ờởỡớợ ^ùủũúụ ^ừửữứự ^ỳỷỹýỵ'

LANGUAGES = [
    (1, 'und', 'neutral', 1, ''),
    (2, 'en', 'English', 1, ''),
    (3, 'de', 'German', 1, ''),
    (4, 'fr', 'French', 1, ''),
    (5, 'es', 'Spanish', 1, 'ñ=n.1'),
    (6, 'it', 'Italian', 1, ''),
    (7, 'pt', 'Portuguese', 1, ''),
    (8, 'nl', 'Dutch', 1, ''),
    (9, 'sv', 'Swedish', 1, SV),
    (10, 'da', 'Danish', 1, DA),
    (11, 'nb', 'Norwegian', 1, NB),
    (12, 'fi', 'Finnish', 1, FI),
    (13, 'is', 'Icelandic', 1,
     'á=a.1 é=e.1 í=i.1 ó=o.1 ú=u.1 ý=y.1 ð=d.1 æ=@0 ä~æ ö=@1 ø~ö å=@2'),
    (14, 'pl', 'Polish', 1, 'ą=a.1 ć=c.1 ę=e.1 ł=l.1 ń=n.1 ó=o.1 ś=s.1 ź=z.1 ż=z.2'),
    (15, 'cs', 'Czech', 1, 'č=c.1 ch=h.1 ř=r.1 š=s.1 ž=z.1'),
    (16, 'sk', 'Slovak', 1, 'ä=a.1 č=c.1 ch=h.1 ô=o.1 ř=r.1 š=s.1 ž=z.1'),
    (17, 'hu', 'Hungarian', 1, HU),
    (18, 'hr', 'Croatian', 1, HR),
    (19, 'sl', 'Slovenian', 1, 'č=c.1 ć=c.3 đ=d.1 š=s.1 ž=z.1'),
    (20, 'sr', 'Serbian', 3, ''),
    (21, 'ro', 'Romanian', 1, 'ă=a.1 â=a.3 î=i.1 ș=s.1 ş:ș ț=t.1 ţ:ț'),
    (22, 'bg', 'Bulgarian', 3, ''),
    (23, 'ru', 'Russian', 3, ''),
    (24, 'uk', 'Ukrainian', 3, 'ґ>г ї>і'),
    (25, 'be', 'Belarusian', 3, 'ё>е ў>у'),
    (26, 'mk', 'Macedonian', 3, 'ѓ>ђ ќ>ћ'),
    (27, 'el', 'Greek', 2, ''),
    (28, 'tr', 'Turkish', 1, TR),
    (29, 'az', 'Azerbaijani', 1, AZ),
    (30, 'et', 'Estonian', 1, 'š=s.1 z=s.2 ž=s.3 w=v.3 õ=w.0 ä=w.1 ö=w.2 ü=w.3'),
    (31, 'lv', 'Latvian', 1, 'č=c.1 ģ=g.1 ķ=k.1 ļ=l.1 ņ=n.1 ŗ=r.1 š=s.1 ž=z.1 y~i'),
    (32, 'lt', 'Lithuanian', 1, 'č=c.1 š=s.1 ž=z.1 y~i ^ęė ^ųū'),
    (33, 'cy', 'Welsh', 1, 'ch=c.1 dd=d.1 ff=f.1 ng=g.1 ll=l.1 ph=p.1 rh=r.1 th=t.1'),
    (34, 'ga', 'Irish', 1, ''),
    (35, 'sq', 'Albanian', 1,
     'ç=c.1 dh=d.1 ë=e.1 gj=g.1 ll=l.1 nj=n.1 rr=r.1 sh=s.1 th=t.1 xh=x.1 zh=z.1'),
    (36, 'mt', 'Maltese', 1, 'ċ=b.1 ġ=f.1 għ=g.1 ħ=h.1 ż=y.1'),
    (37, 'ca', 'Catalan', 1, ''),
    (38, 'eu', 'Basque', 1, ''),
    (39, 'gl', 'Galician', 1, 'ñ=n.1'),
    (40, 'vi', 'Vietnamese', 1, VI),
    (41, 'id', 'Indonesian', 1, ''),
    (42, 'af', 'Afrikaans', 1, ''),
    (43, 'fo', 'Faroese', 1, NB),
    (44, 'eo', 'Esperanto', 1, 'ĉ=c.1 ĝ=g.1 ĥ=h.1 ĵ=j.1 ŝ=s.1 ŭ=u.1'),
    (45, 'he', 'Hebrew', 6, ''),
    (46, 'ar', 'Arabic', 7, 'CLDR'),
    (47, 'fa', 'Persian', 7, 'CLDR'),
    (48, 'ur', 'Urdu', 7, 'CLDR'),
    (49, 'hi', 'Hindi', 8, 'ं>ॐ ँ~ं ः>ॐ'),
    (50, 'bn', 'Bengali', 9, 'ং>ঔ ঃ>ঔ ঁ>ঔ'),
    (51, 'pa', 'Punjabi', 0xa, 'CLDR ^ੱੰਂਁ'),
    (52, 'gu', 'Gujarati', 0xb, 'ં>ૐ ઁ~ં ઃ>ૐ'),
    (53, 'or', 'Oriya', 0xc, 'CLDR'),
    (54, 'ta', 'Tamil', 0xd, 'CLDR'),
    (55, 'te', 'Telugu', 0xe, 'ఁ>ఔ ం>ఔ ః>ఔ'),
    (56, 'kn', 'Kannada', 0xf, 'CLDR'),
    (57, 'ml', 'Malayalam', 0x10, 'CLDR'),
    (58, 'si', 'Sinhala', 0x11, 'ං>ඖ ඃ>ඖ ඤ>ඥ'),
    (59, 'th', 'Thai', 0x12, ''),
    (60, 'ka', 'Georgian', 4, ''),
    (61, 'hy', 'Armenian', 5, 'և&եվ'),
    (62, 'kk', 'Kazakh', 3, 'ё>е ү>ұ і>ы'),
    (63, 'ja', 'Japanese', 0x13, 'JIS kana'),
    (64, 'ko', 'Korean', 0x13, ''),
    (65, 'zh-Hans', 'Chinese, simplified', 0x13, 'pinyin'),
    (66, 'zh-Hant', 'Chinese, traditional', 0x13, 'strokes'),
    (67, 'bs', 'Bosnian', 1, HR),
    (68, 'sr-Latn', 'Serbian, Latin', 1, HR),
    (69, 'uz', 'Uzbek', 1, "oʻ=@0 o‘:oʻ o':oʻ gʻ=@1 g‘:gʻ g':gʻ sh=@2 ch=@3"),
    (70, 'ig', 'Igbo', 1, 'ch=b.1 gb=g.1 gh=g.2 gw=g.3 ị=i.1 kp=k.1 kw=k.2 ṅ=n.1 nw=n.2 ny=n.3 '
     'ọ=o.1 sh=s.1 ụ=u.1'),
    (71, 'ps', 'Pashto', 7, 'CLDR'),
    (72, 'hsb', 'Upper Sorbian', 1, 'č=c.1 ć=c.3 ě=e.1 ch=h.1 ł=k.1 ř=r.1 š=s.1 ž=z.1 ź=z.2'),
    (73, 'dsb', 'Lower Sorbian', 1,
     'č=c.1 ć=c.3 ě=e.1 ch=h.1 ł=k.1 ń=n.1 ŕ=r.1 š=s.1 ś=s.3 ž=z.1 ź=z.2'),
    (74, 'my', 'Burmese', 0x12, 'CLDR'),
    (75, 'km', 'Khmer', 0x12, 'CLDR ^៎៏៑័ៈ៝់៉៊៍'),
    (0x60, 'de-phonebook', 'German, phone book', 1, 'ä&ae ö&oe ü&ue'),
    (0x61, 'es-traditional', 'Spanish, traditional', 1, 'ch=c.1 ll=l.1 ñ=n.1'),
    (0x62, 'sv-traditional', 'Swedish, traditional', 1, SV + ' w~v'),
]
