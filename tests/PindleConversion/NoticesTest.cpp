#include <gtest/gtest.h>

#include "tests/PindleConversion/Support.h"

namespace pindle::conversion::test {

namespace {

std::string noticeOf(std::string_view text, std::string_view zone = "Europe/London") {
    return convertText(text, zone).userMessage;
}

std::string errorOf(std::string_view text, std::string_view zone) {
    const Reply reply = convertText(text, zone);
    EXPECT_FALSE(reply.draft) << text;
    return reply.error;
}

bool has(const std::string &sentence, std::string_view part) {
    return sentence.find(part) != std::string::npos;
}

TEST(Notices, anOrdinaryTextGetsNone) {
    for (const char *text :
         {"Dentist tomorrow at 9:30", "Zahnarzt am 14.3.2026 um 9:30 Uhr", "明日の15時から会議",
          "Team lunch on Friday 13 March 2026 at 12:30, Rosa's Thai"})
        EXPECT_EQ(noticeOf(text), "") << text;
}

TEST(Notices, aWeekdayThatDoesNotMatchIsSaid) {
    EXPECT_EQ(noticeOf("Review on Friday, 9 April 2026 at 10:00"),
              "The weekday in the text does not match 2026-04-09; please check the date.");
}

TEST(Notices, theySpeakTheLanguageOfTheText) {
    EXPECT_EQ(noticeOf("Besprechung am Freitag, 9. April 2026 um 10 Uhr", "Europe/Berlin"),
              "Der Wochentag im Text passt nicht zum 2026-04-09; bitte das Datum prüfen.");
    EXPECT_EQ(noticeOf("会議は2026年4月9日（金）10時からです", "Asia/Tokyo"),
              "曜日が2026-04-09と一致しません。日付を確認してください。");
}

TEST(Notices, anAmbiguousNumericDateIsSaid) {
    EXPECT_EQ(noticeOf("Vet 5/6 at 9:15"), "The date was read as 2026-06-05; please check it.");
    EXPECT_EQ(noticeOf("Vet 5/6 at 9:15", "America/New_York"),
              "The date was read as 2026-05-06; please check it.");
    EXPECT_EQ(noticeOf("Vet 25/6 at 9:15"), "");
}

TEST(Notices, aTimeThatAClockChangeSkipsIsSaid) {
    EXPECT_EQ(noticeOf("Deployment on 29 March 2026 at 02:30", "Europe/Berlin"),
              "Clocks go forward then: 02:30 does not exist on 2026-03-29.");
    EXPECT_EQ(noticeOf("Deployment on 29 March 2026 at 03:30", "Europe/Berlin"), "");
}

TEST(Notices, aTimeThatAClockChangeRepeatsIsSaid) {
    EXPECT_EQ(noticeOf("Deployment on 25 October 2026 at 02:30", "Europe/Berlin"),
              "Clocks go back then: 02:30 comes twice on 2026-10-25.");
    EXPECT_EQ(noticeOf("Deployment on 25 October 2026 at 02:30", "Asia/Tokyo"), "");
}

TEST(Notices, furtherEventsAreCounted) {
    EXPECT_EQ(noticeOf("Mock exam 8 April, 2-4pm, Hall C. Real exam 22 April, 2-4pm, Hall A."),
              "The text names one more event; only the first was taken.");
    EXPECT_EQ(noticeOf("Concert 8 April 8pm.\nOpera 9 April 7pm.\nBallet 12 April 7:30pm."),
              "The text names 2 more events; only the first was taken.");
}

TEST(Notices, aTitleInCapitalsIsSoftened) {
    EXPECT_EQ(draftOf("BOOK FAIR OF THE YEAR\nMarch 20, 3pm").title, "Book Fair of the Year");
    EXPECT_EQ(draftOf("NASA talk\nMarch 20, 3pm").title, "NASA talk");
}

TEST(Notices, aWeekdayThatDisagreesIsSaidInTheTextsLanguage) {
    EXPECT_TRUE(has(noticeOf("Riunione martedì 12 marzo 2026 alle 10", "Europe/Rome"),
                    "Il giorno della settimana nel testo"));
    EXPECT_TRUE(has(noticeOf("Reunião terça-feira, 12 de março de 2026, às 10h", "Europe/Lisbon"),
                    "O dia da semana no texto"));
    EXPECT_TRUE(has(noticeOf("Vergadering dinsdag 12 maart 2026 om 10.00 uur", "Europe/Amsterdam"),
                    "De weekdag in de tekst"));
}

TEST(Notices, theOrdinaryCaseHasNone) {
    EXPECT_EQ(noticeOf("Riunione giovedì 12 marzo 2026 alle 10", "Europe/Rome"), "");
    EXPECT_EQ(noticeOf("Reunião quinta-feira, 12 de março de 2026, às 10h", "Europe/Lisbon"), "");
    EXPECT_EQ(noticeOf("Vergadering donderdag 12 maart 2026 om 10.00 uur", "Europe/Amsterdam"), "");
}

TEST(Notices, aMissingDayIsSaidToBeToday) {
    EXPECT_TRUE(has(noticeOf("Cena alle 20:30 da Mario", "Europe/Rome"), "oggi"));
    EXPECT_TRUE(has(noticeOf("Jantar às 20h30 no Moinho", "Europe/Lisbon"), "hoje"));
    EXPECT_TRUE(has(noticeOf("Borrel om 17.30 uur bij Kees", "Europe/Amsterdam"), "vandaag"));
}

TEST(Notices, aTextWithoutAnEventIsRefusedInItsLanguage) {
    EXPECT_TRUE(has(errorOf("Grazie mille per il regalo, è bellissimo!", "Europe/Rome"),
                    "Nel testo selezionato"));
    EXPECT_TRUE(
        has(errorOf("Obrigado pela ajuda com as malas!", "Europe/Lisbon"), "O texto selecionado"));
    EXPECT_TRUE(has(errorOf("Bedankt voor de bloemen, ze zijn prachtig!", "Europe/Amsterdam"),
                    "de geselecteerde tekst"));
}

TEST(Notices, aTimeThatTheClockChangeSkipsIsSaid) {
    EXPECT_TRUE(has(noticeOf("Turno domenica 29 marzo 2026 alle ore 02:30", "Europe/Rome"),
                    "cambio dell'ora"));
    EXPECT_TRUE(
        has(noticeOf("Nachtwandeling zondag 29 maart 2026 om 02.30 uur", "Europe/Amsterdam"),
            "zomertijd"));
}

} // namespace

} // namespace pindle::conversion::test
