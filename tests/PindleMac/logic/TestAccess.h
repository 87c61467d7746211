#pragma once

#include "PindleMac/AppServices.h"
#include "PindleMac/AppSettingsStore.h"
#include "PindleMac/AppViewModel.h"
#include "PindleMac/GlobalHotKeyManager.h"
#include "tests/platform/FakeDesktop.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>

inline void PrintTo(const QString &text, std::ostream *out) {
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QStringList &list, std::ostream *out) {
    *out << list.join(QLatin1String("\n")).toStdString();
}

namespace pindle {

/// Makes the objects whose constructors are private, and reaches private operations.
struct TestAccess {
    static std::unique_ptr<AppSettingsStore> settings(fake::FakeDesktop &desktop) {
        return std::unique_ptr<AppSettingsStore>(
            new AppSettingsStore(desktop.userDefaults, desktop.loginItem));
    }
    static std::unique_ptr<GlobalHotKeyManager> hotKeys(fake::FakeDesktop &desktop) {
        return std::unique_ptr<GlobalHotKeyManager>(new GlobalHotKeyManager(desktop.hotKeys));
    }
    static std::unique_ptr<AppViewModel> viewModel(fake::FakeDesktop &desktop,
                                                   AppSettingsStore &settings,
                                                   GlobalHotKeyManager &hotKeys) {
        return std::unique_ptr<AppViewModel>(new AppViewModel(desktop.platform, settings, hotKeys));
    }
    static ResolvedDateRange resolve(AppServices &services, const CalendarEventDetails &details) {
        return services.resolvedDateRange(details);
    }
    static bool hasHotKey(const GlobalHotKeyManager &manager) {
        return manager.hotKeyRef_.has_value();
    }
};

/// The program's logic on a fake desktop.
struct LogicFixture : ::testing::Test {
    fake::FakeDesktop desktop;
    AppServices services{desktop.platform};

    /// The error a finished task ended with, if any.
    template<class T> static std::exception_ptr errorOf(QCoro::Task<T> task) {
        EXPECT_TRUE(task.isReady());
        std::exception_ptr error;
        const auto watch = [&]() -> QCoro::Task<void> {
            try {
                co_await task;
            } catch (...) {
                error = std::current_exception();
            }
        };
        auto watching = watch();
        return error;
    }
    /// The result of a finished task; its error is thrown.
    template<class T> static T resultOf(QCoro::Task<T> task) {
        EXPECT_TRUE(task.isReady());
        std::optional<T> result;
        std::exception_ptr error;
        const auto watch = [&]() -> QCoro::Task<void> {
            try {
                result = co_await task;
            } catch (...) {
                error = std::current_exception();
            }
        };
        auto watching = watch();
        if (error)
            std::rethrow_exception(error);
        return result.value_or(T());
    }
    static bool isAppError(const std::exception_ptr &error, AppError::Case errorCase) {
        if (!error)
            return false;
        try {
            std::rethrow_exception(error);
        } catch (const AppError &appError) {
            return appError.errorCase() == errorCase;
        } catch (...) {
            return false;
        }
    }
    /// Runs everything that is queued on the main thread.
    static void drain() {
        for (int i = 0; i < 10; ++i)
            QCoreApplication::sendPostedEvents();
    }
};

inline CalendarEventDetails draft(const QString &startDate, const QString &startTime = {},
                                  const QString &endDate = {}, const QString &endTime = {},
                                  const QString &timeZone = QStringLiteral("America/New_York")) {
    return {QStringLiteral("Lunch"),
            QString(),
            QString(),
            startDate,
            endDate,
            startTime,
            endTime,
            timeZone};
}

} // namespace pindle
