#pragma once

#include "PindleMac/HelpWindowController.h"
#include "PindleMac/views/DebugRow.h"
#include "PindleMac/views/DisclosureGroup.h"
#include "PindleMac/views/DisclosureHeader.h"
#include "PindleMac/views/HelpStep.h"
#include "PindleMac/views/MessageLine.h"
#include "PindleMac/views/PermissionCard.h"
#include "PindleMac/views/SelectableText.h"
#include "PindleMac/views/TitledWindow.h"
#include "PindleMac/views/WindowButton.h"
#include "PindleMac/views/WindowTheme.h"
#include "tests/PindleMac/shell/PartPicture.h"
#include "tests/PindleMac/shell/ViewProbe.h"
#include "tests/PindleMac/shell/WindowPalettes.h"

#include <QAccessible>
#include <QClipboard>

namespace pindle::shelltest {

inline const QString accessibility = QStringLiteral("Accessibility");
inline const QString calendar = QStringLiteral("Calendar");
inline const QString prompt = QStringLiteral("Prompt");
inline const QString request = QStringLiteral("Verify / Request");
inline const QString openSettings = QStringLiteral("Open Settings");

/// The help window over a fake desktop.
struct HelpFixture : ::testing::Test {
    fake::FakeDesktop desktop;
    std::unique_ptr<HelpWindowController> controller =
        std::make_unique<HelpWindowController>(desktop.platform);
    TitledWindow *window = &controller->window();

    void show() {
        controller->show();
        settle();
    }
    void grantAll() {
        desktop.accessibility.trusted = true;
        desktop.eventStore.status = EKAuthorizationStatus::writeOnly;
    }
    PermissionCard &card(const QString &title) const {
        return *named<PermissionCard>(*window, title);
    }
    WindowButton &action(const QString &cardTitle, const QString &label) const {
        return *named<WindowButton>(card(cardTitle), label);
    }
    QString status(const QString &title) const { return shownTexts(card(title)).value(1); }
    DisclosureHeader &header() const { return *window->findChild<DisclosureHeader *>(); }
    QStringList debugValues() const {
        QStringList values;
        for (const SelectableText *value : shownViews<SelectableText>(*window))
            values.append(value->toPlainText());
        return values;
    }
    QString message() const {
        const auto *line = window->findChild<MessageLine *>();
        return line->isVisibleTo(window) ? line->text() : QString();
    }
    void unfold() {
        header().click();
        settle();
        settle();
    }
};

} // namespace pindle::shelltest
