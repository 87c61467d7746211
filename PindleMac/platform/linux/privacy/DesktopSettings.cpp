#include "PindleMac/platform/linux/privacy/DesktopSettings.h"

#include <QStandardPaths>
#include <algorithm>
#include <vector>

namespace pindle {

namespace {

struct Candidate {
    QString desktop; ///< as $XDG_CURRENT_DESKTOP names it
    QString program;
    QStringList arguments;
};

std::vector<Candidate> candidates(PrivacyPage page) {
    const QString gnome = QStringLiteral("GNOME");
    const QString kde = QStringLiteral("KDE");
    const QString xfce = QStringLiteral("XFCE");
    const QString center = QStringLiteral("gnome-control-center");
    const QString system = QStringLiteral("systemsettings");
    const QString manager = QStringLiteral("xfce4-settings-manager");
    if (page == PrivacyPage::calendars) {
        return {{gnome, center, {QStringLiteral("online-accounts")}},
                {kde, system, {}},
                {xfce, manager, {}}};
    }
    return {{gnome, center, {QStringLiteral("universal-access")}},
            {kde, system, {QStringLiteral("kcm_access")}},
            {xfce, QStringLiteral("xfce4-accessibility-settings"), {}},
            {xfce, manager, {}}};
}

} // namespace

std::optional<SettingsProgram> desktopSettings(PrivacyPage page, const QStringList &desktops,
                                               const FindProgram &find) {
    auto all = candidates(page);
    std::stable_partition(all.begin(), all.end(), [&desktops](const Candidate &candidate) {
        return desktops.contains(candidate.desktop, Qt::CaseInsensitive);
    });
    for (const Candidate &candidate : all) {
        if (const QString path = find(candidate.program); !path.isEmpty())
            return SettingsProgram{path, candidate.arguments};
    }
    return std::nullopt;
}

std::optional<SettingsProgram> desktopSettings(PrivacyPage page) {
    const QString desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    return desktopSettings(page, desktops.split(QLatin1Char(':')), [](const QString &name) {
        return QStandardPaths::findExecutable(name);
    });
}

} // namespace pindle
