#include <gtest/gtest.h>

#include "PindleConversion/Convert.h"

namespace pindle::conversion::test {

namespace {

// 2 March 2026 is a Monday.
constexpr std::string_view kToday = "2026-03-02";

std::string noticeOf(std::string_view text, std::string_view zone) {
    return convert({text, kToday, zone}).userMessage;
}

std::string errorOf(std::string_view text, std::string_view zone) {
    const Reply reply = convert({text, kToday, zone});
    EXPECT_FALSE(reply.draft) << text;
    return reply.error;
}

bool has(const std::string &sentence, std::string_view part) {
    return sentence.find(part) != std::string::npos;
}

} // namespace

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

} // namespace pindle::conversion::test
