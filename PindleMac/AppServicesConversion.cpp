#include "PindleMac/AppServices.h"
#include "PindleMac/AppSettingsStore.h"
#include "PindleMac/platform/Bundle.h"
#include "PindleMac/platform/UserDefaults.h"

namespace pindle {

QCoro::Task<QString> AppServices::ensureRegistered() {
    const QString stored =
        platform_.userDefaults.string(AppPreferences::anonymizedKey).value_or(QString());
    if (!stored.isEmpty())
        co_return stored;

    const QVariant version =
        platform_.bundle.objectForInfoDictionaryKey(QStringLiteral("CFBundleShortVersionString"));
    const bool isText = version.metaType() == QMetaType::fromType<QString>();
    const InstallResponse reply =
        co_await apiClient_.registerInstall(isText ? version.toString() : QStringLiteral("1.0.0"));
    platform_.userDefaults.setString(AppPreferences::anonymizedKey, reply.anonymizedKey);
    co_return reply.anonymizedKey;
}

QCoro::Task<TextConversionResponse> AppServices::convertSelection(QString text) {
    const QString key = co_await ensureRegistered();
    co_return co_await apiClient_.convertText(text, key);
}

} // namespace pindle
