#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace pindle::conversion::test {

/// The files with cases of a folder, by name; each line of a file is one case.
std::vector<std::filesystem::path> caseFiles(const std::filesystem::path &folder);

/// All cases of some files. Throws when a file cannot be read or a line is no JSON.
std::vector<nlohmann::json> readCases(const std::vector<std::filesystem::path> &files);

/// How one case was answered, by the checks that apply to it.
struct Verdict {
    std::map<std::string, bool> checks;
    std::string got; ///< the draft in one line, for messages

    bool good() const;
};

/// Converts the text of a case and compares the draft with the wanted one: "noevent" where there is
/// no event, else "missed" (true when a draft came), "start", "end", "zone", "location", "title"
/// and "tidy". A wanted value is one text or a list of those that will do; "" stands for none.
Verdict judge(const nlohmann::json &given);

/// Whether a check says something about a case: only an end or a zone that the text names is one
/// that can be found.
bool counts(const std::string &check, const nlohmann::json &given);

/// Whether a title may stay as it is: one line of at most 60 columns without a date, a clock time,
/// an address, a label, loose punctuation or a preposition that leads nowhere.
bool isTidy(const std::string &title);

} // namespace pindle::conversion::test
