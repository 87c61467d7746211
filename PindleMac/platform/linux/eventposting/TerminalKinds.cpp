#include "PindleMac/platform/linux/eventposting/TerminalKinds.h"

#include <algorithm>
#include <array>

namespace pindle {
namespace {

/// Windows that are one VTE terminal and nothing else. The terminal widget itself takes
/// Ctrl+Insert as copy; the program that runs in it receives nothing.
constexpr std::array vteTerminals = {
    "gnome-terminal",
    "gnome-terminal-server",
    "xfce4-terminal",
    "mate-terminal",
    "lxterminal",
    "terminator",
    "tilix",
    "guake",
    "tilda",
    "sakura",
    "roxterm",
    "kgx",
    "org.gnome.console",
    "io.elementary.terminal",
    "pantheon-terminal",
};

/// Terminals in which Ctrl+C interrupts and Ctrl+Insert is passed on or unsure, and editors in
/// which Ctrl+C is the beginning of another command. What is highlighted there is the PRIMARY
/// selection without any key.
constexpr std::array chordless = {
    "xterm",
    "uxterm",
    "koi8rxterm",
    "urxvt",
    "rxvt",
    "rxvt-unicode",
    "urxvtd",
    "aterm",
    "eterm",
    "mlterm",
    "mrxvt",
    "st",
    "st-256color",
    "alacritty",
    "kitty",
    "foot",
    "footclient",
    "konsole",
    "yakuake",
    "qterminal",
    "terminology",
    "deepin-terminal",
    "cool-retro-term",
    "wezterm",
    "wezterm-gui",
    "org.wezfurlong.wezterm",
    "com.mitchellh.ghostty",
    "ghostty",
    "contour",
    "rio",
    "hyper",
    "tabby",
    "warp",
    "dev.warp.warp",
    "zutty",
    "hanterm",
    "kterm",
    "cxterm",
    "emacs",
    "gvim",
    "nvim-qt",
    "neovide",
    "gnvim",
};

template<std::size_t n>
bool contains(const std::array<const char *, n> &names, const QByteArray &name) {
    return std::any_of(names.begin(), names.end(), [&](const char *known) {
        return name.compare(known, Qt::CaseInsensitive) == 0;
    });
}

} // namespace

std::optional<CopyChord> knownCopyChord(const XWindowClass &windowClass) {
    // The instance can be set by the user, the class hardly ever is; the cautious answer wins.
    if (contains(chordless, windowClass.name) || contains(chordless, windowClass.instance))
        return CopyChord::none;
    if (contains(vteTerminals, windowClass.name))
        return CopyChord::controlInsert;
    return std::nullopt;
}

} // namespace pindle
