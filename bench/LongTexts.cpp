#include "bench/LongTexts.h"

#include <array>
#include <random>
#include <string_view>

namespace pindle::bench {

namespace {

/// The same on every machine and in every run.
class Dice {
public:
    std::size_t below(std::size_t limit) { return m_engine() % limit; }
    std::string_view of(std::span<const std::string_view> words) {
        return words[below(words.size())];
    }

private:
    std::minstd_rand m_engine{20260321};
};

/// No character is cut in two.
std::string cut(std::string text, std::size_t bytes) {
    constexpr unsigned kContinuationMask = 0xC0;
    constexpr unsigned kContinuation = 0x80;
    if (text.size() > bytes) {
        while (bytes > 0 &&
               (static_cast<unsigned char>(text[bytes]) & kContinuationMask) == kContinuation)
            --bytes;
        text.resize(bytes);
    }
    return text;
}

std::string strung(std::size_t bytes, std::span<const std::string_view> words) {
    Dice dice;
    std::string text;
    while (text.size() < bytes)
        text += dice.of(words);
    return cut(std::move(text), bytes);
}

constexpr auto kPeople = std::to_array<std::string_view>(
    {"The caretaker", "Our neighbour", "Marta", "The whole choir", "My sister", "The new tenant",
     "Mr Lindqvist", "The committee", "Nobody", "The baker from the corner", "Ines",
     "The treasurer"});
constexpr auto kActs = std::to_array<std::string_view>(
    {"wrote that", "had hoped that", "told everybody that", "never believed that",
     "was glad to hear that", "reminded us that", "could not remember whether",
     "asked more than once whether", "explained at length why", "seemed to think that"});
constexpr auto kThings = std::to_array<std::string_view>(
    {"the roof would be mended before the leaves fall", "the old piano is out of tune again",
     "the minutes of the council had been lost on the way", "nobody waters the plants in the hall",
     "the cellar has stayed dry in spite of all that rain",
     "the price of bread went up by 20 cents", "a quiet room is worth more than a large one",
     "the bicycles are left in front of the gate", "the letters are kept in a box under the stairs",
     "the second floor may be painted in another colour", "the heating needs 3 days to warm up",
     "the children built a house of 40 chairs", "the garden belongs to all who work in it",
     "coffee tastes better from the small cups"});
constexpr auto kEnds = std::to_array<std::string_view>(
    {". ", ". ", ". ", ", and that was the end of it. ", "; the rest is in the file. ",
     ", which may well be true. ", "! ", ", or so I was told. ", ".\n\n", ".\n"});
constexpr auto kMonths =
    std::to_array<std::string_view>({"January", "February", "March", "April", "May", "June", "July",
                                     "August", "September", "October", "November", "December"});
constexpr auto kDays = std::to_array<std::string_view>(
    {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"});
constexpr auto kMeetings = std::to_array<std::string_view>(
    {"The next rehearsal", "A short meeting", "The inspection", "Dinner with the Okafors",
     "The parents' evening", "The reading"});
constexpr auto kPlaces =
    std::to_array<std::string_view>({"the town hall", "Room 12", "Café Miro", "the library",
                                     "24 Mill Lane", "the community centre"});

std::string dated(Dice &dice) {
    std::string out(dice.of(kMeetings));
    if (dice.below(2) == 0)
        out += " is on " + std::string(dice.of(kDays)) + ", " + std::to_string(1 + dice.below(28)) +
               " " + std::string(dice.of(kMonths));
    else
        out += " was moved to " + std::string(dice.of(kMonths)) + " " +
               std::to_string(1 + dice.below(28)) + ", 2027";
    out += " at " + std::to_string(8 + dice.below(12)) + (dice.below(2) == 0 ? ":30" : ":00");
    return out + " in " + std::string(dice.of(kPlaces)) + ". ";
}

/// Letters about everyday matters, with a date in one of fifteen sentences.
std::string prose(std::size_t bytes) {
    constexpr std::size_t kSentencesPerDate = 15;
    Dice dice;
    std::string text;
    while (text.size() < bytes) {
        if (dice.below(kSentencesPerDate) == 0) {
            text += dated(dice);
            continue;
        }
        text += dice.of(kPeople);
        text += ' ';
        text += dice.of(kActs);
        text += ' ';
        text += dice.of(kThings);
        text += dice.of(kEnds);
    }
    return cut(std::move(text), bytes);
}

std::string digits(std::size_t bytes) {
    static constexpr auto kWords = std::to_array<std::string_view>(
        {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "1", "2", "/", "-", ".", ":", ",", " "});
    return strung(bytes, kWords);
}

std::string dates(std::size_t bytes) {
    static constexpr auto kWords = std::to_array<std::string_view>(
        {"12.03.2027 ", "2027-03-12 ", "3/12/2027 ", "12 March 2027 ", "Friday ", "next Tuesday ",
         "tomorrow ", "le 3 juin ", "am 4. Mai ", "3月12日 ", "in two weeks ", "9-11 April, "});
    return strung(bytes, kWords);
}

std::string markers(std::size_t bytes) {
    static constexpr auto kWords = std::to_array<std::string_view>(
        {"at ", "in ", "@ ", "at the ", "bei ", "im ", "chez ", "à ", "en ", "presso ", "w ",
         "in at ", "location ", "venue "});
    return strung(bytes, kWords);
}

std::string unspaced(std::size_t bytes) {
    static constexpr auto kWords = std::to_array<std::string_view>(
        {"会議", "明日", "午後", "三",         "時",   "半",   "から", "東京", "駅",
         "で",   "の",   "日",   "月",         "我们", "下周", "星期", "五",   "在",
         "公司", "楼",   "开会", "打ち合わせ", "に",   "集合", "十",   "点"});
    return strung(bytes, kWords);
}

constexpr auto kNotes = std::to_array<std::string_view>(
    {"院子里的桂花开了，整条街都是香味。", "他说那本书放在桌子上已经很久没有人看过。",
     "昨日の雨で庭の木がまた少し大きくなった。", "孩子们在河边放风筝，老人坐在树下聊天。",
     "この店のパンは焼きたてがいちばんおいしいと思います。", "她把旧照片一张一张地贴进相册里。",
     "駅前の喫茶店で友だちと長い話をした。", "邻居家的猫每天都来我们家晒太阳。",
     "古い時計の音が静かな部屋に響いている。", "楼上的电梯坏了，大家只好走楼梯。",
     "父は毎朝同じ道を犬と歩いている。", "那条小路通向山后的一座旧庙。"});
constexpr auto kNotices = std::to_array<std::string_view>(
    {"下周三下午三点在公司二楼会议室开会。", "3月12日（金）14時から市民会館で説明会があります。",
     "请于5月8日上午十点到社区医院体检。", "来週の土曜日に公園で集合しましょう。"});

/// Notes about everyday matters in scripts without spaces, with a date in one of fifteen.
std::string notes(std::size_t bytes) {
    constexpr std::size_t kSentencesPerDate = 15;
    Dice dice;
    std::string text;
    while (text.size() < bytes)
        text += dice.below(kSentencesPerDate) == 0 ? dice.of(kNotices) : dice.of(kNotes);
    return cut(std::move(text), bytes);
}

std::string labels(std::size_t bytes) {
    static constexpr auto kWords = std::to_array<std::string_view>(
        {"Where: ", "When: ", "Date: ", "Time: ", "Location: ", "Subject: ", "Ort: ", "Wann: ",
         "Lieu : ", "Fecha: ", "Quando: ", "場所：", "What: "});
    return strung(bytes, kWords);
}

std::string quotes(std::size_t bytes) {
    constexpr std::size_t kDeepest = 400;
    Dice dice;
    std::string text;
    while (text.size() < bytes)
        text += std::string(1 + dice.below(kDeepest), '>') + " so it was\n";
    return cut(std::move(text), bytes);
}

std::string marks(std::size_t bytes) {
    static constexpr auto kWords = std::to_array<std::string_view>(
        {"<", "*", "[", "(", "_", "\"", "“", "`", "~", "«", "</", "'", "a", " "});
    return strung(bytes, kWords);
}

constexpr std::array<LongText, 9> kTexts{{
    {"prose", "prose with dates now and then", prose},
    {"notes", "the same in Chinese and Japanese", notes},
    {"digits", "only digits and separators", digits},
    {"dates", "only dates", dates},
    {"markers", "only at, in and their like", markers},
    {"unspaced", "only dates and the like in Chinese and Japanese", unspaced},
    {"labels", "one line of labels", labels},
    {"quotes", "deep quotes, >>>>", quotes},
    {"marks", "brackets and quotation marks left open", marks},
}};

} // namespace

std::span<const LongText> longTexts() {
    return kTexts;
}

} // namespace pindle::bench
