#pragma once

#include "PindleConversion/tokens/Token.h"

namespace pindle::conversion {

/// What the words of a span look like together.
struct Shape {
    bool noun = false;    ///< names a kind of place
    bool street = false;  ///< a street, perhaps with its number
    bool capital = false; ///< some word is capitalised
    bool title = true;    ///< every word that counts is capitalised
    bool event = false;   ///< names a kind of event
    int words = 0;
};

/// What the name of a place looks like, and where it ends.
class PlaceNames {
public:
    explicit PlaceNames(const Document &document)
        : m_document(document) {}

    /// What the words of a span look like together.
    Shape shapeOf(TokenSpan span) const;
    /// The name from `begin` up to what ends it; commas are passed when an address goes on.
    std::uint32_t nameEnd(const Reader &reader, std::uint32_t begin) const;
    /// The bracket that closes the one at `open`, or `open` when none does soon.
    static std::uint32_t closing(const Reader &reader, std::uint32_t open);
    /// A word for a kind of place; "張家銘": a sign that goes on is none.
    static bool isPlaceNoun(const Reader &reader, std::uint32_t i);
    /// "もみじ": a sign that is a particle alone goes on as a word that no lexicon knows.
    static bool opensWord(const Reader &reader, std::uint32_t i);
    /// "はち" of "鳥はち": one unknown sign behind a particle is no word of its own.
    static bool isInsideName(const Reader &reader, std::uint32_t i);
    /// "研修室 参加無料": behind a space small talk follows.
    static bool startsAside(const Reader &reader, std::uint32_t i);
    /// "合唱室": what happens there names the room.
    static bool namesRoom(const Reader &reader, std::uint32_t i);
    /// "Main Street", "rue Haute", "calle de Alcalá", and "Wilgenstraat", whose end alone is known.
    bool isStreet(const Reader &reader, std::uint32_t i, std::uint32_t begin) const;
    /// The mark of "Farmers' Union Hall".
    bool ownsNext(const Reader &reader, std::uint32_t i) const;
    /// Whether token `i` may be part of a name beside the kind of place at `with`.
    bool joinsName(const Reader &reader, std::uint32_t i, std::uint32_t with) const;
    /// "Vide-grenier": the second half of a hyphened word that is no place.
    static bool endsCompound(const Reader &reader, std::uint32_t i);

protected:
    static constexpr std::uint32_t kLongestName = 14; ///< tokens

    const Token &token(std::uint32_t i) const { return m_document.token(i); }

    const Document &m_document;
    /// "Klinik für Orthopädie": the word at `i` belongs to a kind of place that tells its purpose.
    static bool leadsToPurpose(const Reader &reader, std::uint32_t i);

private:
    /// "Quinta das Amoras": a small word of another language within a name.
    bool joinsForeignName(const Reader &reader, std::uint32_t i, std::uint32_t begin) const;
    /// A lone sign of hiragana with one of an unknown word behind it.
    static bool goesOnUnknown(const Reader &reader, std::uint32_t i);
    /// A kind of place, or an unknown word before one.
    static bool leadsToPlace(const Reader &reader, std::uint32_t i);
    /// A small word within a name.
    static bool isFiller(const Reader &reader, std::uint32_t i);
    /// At token `i` the sentence goes on, and the name before it is over.
    bool goesOnWithoutName(const Reader &reader, std::uint32_t i) const;
    /// Whether the name from `begin` ends before token `i`.
    bool stops(const Reader &reader, std::uint32_t i, std::uint32_t begin) const;
    /// Behind the kind of place at `i`, which may have several words: "hall de entrada".
    std::uint32_t behindKind(const Reader &reader, std::uint32_t i) const;
    /// "Gasthaus "Zum Adler"": behind the name in quotes that belongs to the place; `open` where
    /// none does.
    std::uint32_t behindQuotedName(const Reader &reader, std::uint32_t open) const;
    /// Where the part of an address behind a comma ends, or `i` when it is no part of it.
    std::uint32_t addressGoesOn(const Reader &reader, std::uint32_t i, std::uint32_t begin) const;
};

} // namespace pindle::conversion
