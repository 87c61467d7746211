"""A text of each language, highlighted in a real editor and converted by the running program."""

import os
import unittest

import desktop
from desktop import Editor, Pindle

PROGRAM = os.environ["PINDLE_PROGRAM"]

# The text and what the form then holds: title, place, start and end, zone.
TEXTS = {
    "English": ("Choir rehearsal\nThursday 11 March 2027, 7-9pm\nWhere: St Mary's Hall\n",
                "Choir rehearsal", "St Mary's Hall", "2027-03-11 19:00", "2027-03-11 21:00", ""),
    "German": ("Elternabend der Klasse 4b\nam Donnerstag, 11. März 2027, von halb acht bis 21 Uhr\n"
               "Ort: Aula der Lindenschule\n",
               "Elternabend der Klasse 4b", "Aula der Lindenschule", "2027-03-11 19:30",
               "2027-03-11 21:00", ""),
    "French": ("Réunion de chantier\nle jeudi 11 mars 2027 de 14h30 à 16h\n"
               "Lieu : 12 rue des Lilas, Lyon\n",
               "Réunion de chantier", "12 rue des Lilas, Lyon", "2027-03-11 14:30",
               "2027-03-11 16:00", ""),
    "Spanish": ("Asamblea de vecinos\njueves 11 de marzo de 2027, a las siete y media de la tarde\n"
                "Lugar: salón de actos\n",
                "Asamblea de vecinos", "salón de actos", "2027-03-11 19:30", None, ""),
    "Italian": ("Cena di classe\ngiovedì 11 marzo 2027 alle 20:30\nDove: Trattoria del Ponte\n",
                "Cena di classe", "Trattoria del Ponte", "2027-03-11 20:30", None, ""),
    "Portuguese": ("Consulta de dentista\nquinta-feira, 11 de março de 2027, às 15h\n"
                   "Local: Clínica Boa Vista\n",
                   "Consulta de dentista", "Clínica Boa Vista", "2027-03-11 15:00", None, ""),
    "Dutch": ("Ouderavond groep 6\ndonderdag 11 maart 2027 om half acht 's avonds\n"
              "Locatie: basisschool De Linde\n",
              "Ouderavond groep 6", "basisschool De Linde", "2027-03-11 19:30", None, ""),
    "Japanese": ("営業会議\n2027年3月11日（木）午後2時から4時まで\n場所：第3会議室\n",
                 "営業会議", "第3会議室", "2027-03-11 14:00", "2027-03-11 16:00", ""),
    "Chinese": ("项目启动会\n时间：2027年3月11日下午3点到5点\n地点：三楼会议室\n",
                "项目启动会", "三楼会议室", "2027-03-11 15:00", "2027-03-11 17:00", ""),
    "Polish": ("Zebranie rodziców\nczwartek, 11 marca 2027 r., godz. 17:30\nMiejsce: sala 12\n",
               "Zebranie rodziców", "sala 12", "2027-03-11 17:30", None, ""),
    "another zone": ("Board call\nThu, March 11, 2027, 9:00am Tokyo time\n",
                     "Board call", "", "2027-03-11 09:00", None, "Asia/Tokyo"),
}


class Languages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.pindle = Pindle(PROGRAM)
        cls.addClassCleanup(cls.pindle.process.end)

    def check(self, language):
        text, title, place, start, end, zone = TEXTS[language]
        desktop.move_pointer(800, 150)
        with Editor(text):
            desktop.press("ctrl+Home", "ctrl+shift+End")
            desktop.press_shortcut()
            self.pindle.wait_until_filled()
            draft = self.pindle.draft()
            desktop.click(desktop.find(self.pindle.pid, "Close"))
            self.pindle.wait_until_hidden()
        self.assertEqual(draft["Title"], title)
        self.assertEqual(draft["Location"], place)
        self.assertEqual(f"{draft['Start Date']} {draft['Start Time']}", start)
        if end:
            self.assertEqual(f"{draft['End Date']} {draft['End Time']}", end)
        self.assertEqual(draft["Time Zone"], zone or os.environ["TZ"])


def case(language):
    return lambda self: self.check(language)


for _language in TEXTS:
    setattr(Languages, f"test_a_text_in_{_language.replace(' ', '_')}_is_understood",
            case(_language))

if __name__ == "__main__":
    desktop.require_private_desktop()
    unittest.main(verbosity=2)
