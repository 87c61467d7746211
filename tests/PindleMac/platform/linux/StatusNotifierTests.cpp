#include "PindleMac/platform/linux/statusbar/NotifierItem.h"
#include "PindleMac/platform/linux/statusbar/PopUpMenu.h"
#include "PindleMac/platform/linux/statusbar/SymbolImage.h"
#include "ServicesSupport.h"

#include <gtest/gtest.h>
#include <optional>

namespace pindle {
namespace {

constexpr char watcherName[] = "org.kde.StatusNotifierWatcher";
constexpr char watcherPath[] = "/StatusNotifierWatcher";
constexpr char itemInterface[] = "org.kde.StatusNotifierItem";
constexpr char menuInterface[] = "com.canonical.dbusmenu";
const QByteArray square = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 24 24'>"
                          "<path d='M6 6h12v12h-12z'/></svg>";

/// Another program at the session bus: a watcher with a host, which asks items what a host asks.
class Host {
public:
    Host()
        : bus_(SessionBus::open()) {
        static const sd_bus_vtable methods[] = {
            SD_BUS_VTABLE_START(0),
            SD_BUS_METHOD("RegisterStatusNotifierItem", "s", "", onRegister,
                          SD_BUS_VTABLE_UNPRIVILEGED),
            SD_BUS_PROPERTY("IsStatusNotifierHostRegistered", "b", hostProperty, 0, 0),
            SD_BUS_SIGNAL("StatusNotifierHostRegistered", "", 0),
            SD_BUS_SIGNAL("StatusNotifierHostUnregistered", "", 0),
            SD_BUS_VTABLE_END,
        };
        sd_bus_slot *slot = nullptr;
        sd_bus_add_object_vtable(bus_->bus(), &slot, watcherPath, watcherName, methods, this);
        object_.reset(slot);
        bus_->attach();
    }

    void appear() {
        sd_bus_request_name_async(bus_->bus(), nullptr, watcherName, 0, nullptr, nullptr);
    }
    void vanish() {
        sd_bus_release_name_async(bus_->bus(), nullptr, watcherName, nullptr, nullptr);
    }
    void setHost(bool present) {
        hosts = present;
        sd_bus_emit_signal(
            bus_->bus(), watcherPath, watcherName,
            present ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered", nullptr);
    }

    BusMessage call(const char *path, const char *interface, const char *member) {
        return bus_->connection().method(items.back(), path, interface, member);
    }
    /// The answer; null for an error.
    BusMessage ask(const BusMessage &call) {
        answer_.reset();
        answered_ = false;
        sd_bus_slot *slot = nullptr;
        sd_bus_call_async(bus_->bus(), &slot, call.get(), onAnswer, this, UINT64_MAX);
        const BusSlot waiting(slot);
        bus_->flush();
        EXPECT_TRUE(waitUntil([this] { return answered_; }));
        return std::move(answer_);
    }
    BusMessage property(const char *interface, const char *path, const char *name) {
        auto get = bus_->connection().property(items.back(), path, interface, name);
        return ask(get);
    }

    bool hosts = true;
    std::vector<std::string> items; ///< what was registered, in order

private:
    static int onRegister(sd_bus_message *message, void *self, sd_bus_error *) {
        const char *item = nullptr;
        sd_bus_message_read(message, "s", &item);
        static_cast<Host *>(self)->items.emplace_back(item);
        return sd_bus_reply_method_return(message, nullptr);
    }
    static int hostProperty(sd_bus *, const char *, const char *, const char *,
                            sd_bus_message *reply, void *self, sd_bus_error *) {
        return sd_bus_message_append(reply, "b", int(static_cast<Host *>(self)->hosts));
    }
    static int onAnswer(sd_bus_message *message, void *self, sd_bus_error *) {
        auto *host = static_cast<Host *>(self);
        host->answered_ = true;
        if (sd_bus_message_is_method_error(message, nullptr) <= 0)
            host->answer_.reset(sd_bus_message_ref(message));
        return 0;
    }

    std::unique_ptr<SessionBus> bus_;
    BusSlot object_;
    BusMessage answer_;
    bool answered_ = false;
};

struct StatusNotifier : testing::Test {
    Host host;
    std::unique_ptr<SessionBus> bus = SessionBus::open();
    QList<EventType> clicks;
    int menusAboutToShow = 0;
    QList<bool> hosted;
    QStringList chosen;
    std::unique_ptr<NotifierItem> item;

    void begin() {
        item = std::make_unique<NotifierItem>(
            *bus, NotifierItem::Callbacks{[this](EventType type) { clicks += type; },
                                          [this] { ++menusAboutToShow; },
                                          [this](bool present) { hosted += present; }});
        item->setSymbol(square, QStringLiteral("Pindle"));
        const auto choice = [this](const char *title, const char *key) {
            const QString name = QString::fromUtf8(title);
            return MenuItem{name, QString::fromUtf8(key), [this, name] { chosen += name; }};
        };
        item->menu().setMenu({choice("Help_me", ""), MenuItem::separator(), choice("Settings", ","),
                              choice("Quit", "q")});
        bus->attach();
    }
    void beginHosted() {
        host.appear();
        begin();
        ASSERT_TRUE(waitUntil([this] { return item->isHosted() && !host.items.empty(); }));
    }
    void happen(int id, const char *event) {
        auto call = host.call(BusMenu::objectPath, menuInterface, "Event");
        sd_bus_message_append(call.get(), "isvu", id, event, "i", 0, 0);
        host.ask(call);
    }
    void aboutToShow(int id) {
        auto call = host.call(BusMenu::objectPath, menuInterface, "AboutToShow");
        sd_bus_message_append(call.get(), "i", id);
        EXPECT_TRUE(host.ask(call));
    }
    QByteArray text(const char *name) {
        const auto answer = host.property(itemInterface, "/StatusNotifierItem", name);
        const char *value = nullptr;
        EXPECT_TRUE(answer && sd_bus_message_read(answer.get(), "v", "s", &value) >= 0) << name;
        return value;
    }
};

TEST_F(StatusNotifier, itRegistersWithAWatcherThatIsThere) {
    beginHosted();
    EXPECT_EQ(host.items.size(), 1U);
    EXPECT_EQ(host.items[0].front(), ':');
    EXPECT_EQ(hosted, QList<bool>{true});
}

TEST_F(StatusNotifier, itRegistersWithAWatcherThatComesLater) {
    begin();
    EXPECT_FALSE(waitUntil([this] { return item->isHosted(); }, std::chrono::milliseconds(200)));
    host.appear();
    EXPECT_TRUE(waitUntil([this] { return item->isHosted() && host.items.size() == 1; }));
}

TEST_F(StatusNotifier, itRegistersAgainWithAWatcherThatIsRestarted) {
    beginHosted();
    for (std::size_t time = 2; time < 5; ++time) {
        host.vanish();
        EXPECT_TRUE(waitUntil([this] { return !item->isHosted(); }));
        host.appear();
        EXPECT_TRUE(waitUntil([&] { return item->isHosted() && host.items.size() == time; }));
    }
}

TEST_F(StatusNotifier, aWatcherWithoutAHostShowsNothingUntilOneComes) {
    host.hosts = false;
    host.appear();
    begin();
    ASSERT_TRUE(waitUntil([this] { return !host.items.empty(); }));
    EXPECT_FALSE(waitUntil([this] { return item->isHosted(); }, std::chrono::milliseconds(200)));
    host.setHost(true);
    EXPECT_TRUE(waitUntil([this] { return item->isHosted(); }));
    host.setHost(false);
    EXPECT_TRUE(waitUntil([this] { return !item->isHosted(); }));
    EXPECT_EQ(hosted, (QList<bool>{true, false}));
}

TEST_F(StatusNotifier, itSaysWhatItIs) {
    beginHosted();
    EXPECT_EQ(text("Id"), "app.pindle.Pindle");
    EXPECT_EQ(text("Title"), "Pindle");
    EXPECT_EQ(text("IconAccessibleDesc"), "Pindle");
    EXPECT_EQ(text("Status"), "Active");
    EXPECT_EQ(text("Category"), "ApplicationStatus");
    EXPECT_EQ(text("IconName"), "");
    int isMenu = 1;
    const auto answer = host.property(itemInterface, "/StatusNotifierItem", "ItemIsMenu");
    sd_bus_message_read(answer.get(), "v", "b", &isMenu);
    EXPECT_EQ(isMenu, 0) << "a left click is ours";
}

TEST_F(StatusNotifier, everyPropertyCanBeRead) {
    beginHosted();
    for (const char *name :
         {"WindowId", "IconThemePath", "OverlayIconName", "OverlayIconPixmap", "AttentionIconName",
          "AttentionIconPixmap", "AttentionMovieName", "ToolTip", "Menu"})
        EXPECT_TRUE(host.property(itemInterface, "/StatusNotifierItem", name)) << name;
    for (const char *name : {"Version", "TextDirection", "Status", "IconThemePath"})
        EXPECT_TRUE(host.property(menuInterface, BusMenu::objectPath, name)) << name;
}

TEST_F(StatusNotifier, itsPicturesAreWhole) {
    beginHosted();
    const auto answer = host.property(itemInterface, "/StatusNotifierItem", "IconPixmap");
    ASSERT_TRUE(answer);
    sd_bus_message_enter_container(answer.get(), 'v', "a(iiay)");
    sd_bus_message_enter_container(answer.get(), 'a', "(iiay)");
    int pictures = 0;
    while (sd_bus_message_enter_container(answer.get(), 'r', "iiay") > 0) {
        int width = 0;
        int height = 0;
        const void *bytes = nullptr;
        std::size_t size = 0;
        sd_bus_message_read(answer.get(), "ii", &width, &height);
        sd_bus_message_read_array(answer.get(), 'y', &bytes, &size);
        sd_bus_message_exit_container(answer.get());
        ASSERT_EQ(size, std::size_t(4 * width * height));
        const auto *pixels = static_cast<const uchar *>(bytes);
        EXPECT_EQ(pixels[0], 0) << "a corner is transparent: alpha comes first";
        const auto middle = std::size_t(4 * (width * (height / 2) + width / 2));
        EXPECT_EQ(pixels[middle], 255);
        EXPECT_GT(pixels[middle + 1], 200);
        ++pictures;
    }
    EXPECT_GE(pictures, 4);
}

TEST_F(StatusNotifier, clicksArrive) {
    beginHosted();
    for (const char *method : {"Activate", "ContextMenu", "SecondaryActivate"}) {
        auto call = host.call("/StatusNotifierItem", itemInterface, method);
        sd_bus_message_append(call.get(), "ii", 5, 5);
        EXPECT_TRUE(host.ask(call));
    }
    EXPECT_EQ(clicks, (QList<EventType>{EventType::leftMouseUp, EventType::rightMouseUp}));
    EXPECT_EQ(menusAboutToShow, 0);
}

TEST_F(StatusNotifier, theMenuIsDescribedItemByItem) {
    beginHosted();
    auto call = host.call(BusMenu::objectPath, menuInterface, "GetLayout");
    sd_bus_message_append(call.get(), "iias", 0, -1, 0);
    const auto answer = host.ask(call);
    ASSERT_TRUE(answer);
    char *dumped = nullptr;
    std::size_t size = 0;
    std::FILE *stream = open_memstream(&dumped, &size);
    sd_bus_message_dump(answer.get(), stream, 0);
    std::fclose(stream);
    const QByteArray layout(dumped, qsizetype(size));
    std::free(dumped);
    qsizetype from = 0;
    for (const char *expected :
         {"\"children-display\"", "\"submenu\"", "\"Help__me\"", "\"separator\"", "\"Settings\"",
          "\"shortcut\"", "\"Control\"", "\"comma\"", "\"Quit\"", "\"Control\"", "\"q\""}) {
        from = layout.indexOf(expected, from);
        ASSERT_GE(from, 0) << expected << " in\n" << layout.constData();
        ++from;
    }
}

TEST_F(StatusNotifier, aLayoutOfDepthNoughtHasNoChildrenAndAnUnknownItemNone) {
    beginHosted();
    for (const auto &[parent, depth, length] :
         {std::tuple{0, 0, 0}, std::tuple{0, 1, 4}, std::tuple{3, -1, 0}}) {
        auto call = host.call(BusMenu::objectPath, menuInterface, "GetLayout");
        sd_bus_message_append(call.get(), "iias", parent, depth, 0);
        const auto answer = host.ask(call);
        ASSERT_TRUE(answer);
        unsigned revision = 0;
        sd_bus_message_read(answer.get(), "u", &revision);
        sd_bus_message_enter_container(answer.get(), 'r', "ia{sv}av");
        sd_bus_message_skip(answer.get(), "ia{sv}");
        sd_bus_message_enter_container(answer.get(), 'a', "v");
        int children = 0;
        while (sd_bus_message_at_end(answer.get(), 0) == 0) {
            sd_bus_message_skip(answer.get(), "v");
            ++children;
        }
        EXPECT_EQ(children, length);
    }
    for (const int unknown : {-1, 5, 1000000}) {
        auto call = host.call(BusMenu::objectPath, menuInterface, "GetLayout");
        sd_bus_message_append(call.get(), "iias", unknown, -1, 0);
        EXPECT_FALSE(host.ask(call));
    }
}

TEST_F(StatusNotifier, theMenuIsAnnouncedOnceEachTimeItOpens) {
    beginHosted();
    aboutToShow(0);
    happen(0, "opened");
    EXPECT_EQ(menusAboutToShow, 1);
    happen(0, "closed");
    happen(0, "opened");
    EXPECT_EQ(menusAboutToShow, 2) << "for a host that only tells afterwards";
    aboutToShow(3);
    EXPECT_EQ(menusAboutToShow, 2) << "an item is not the menu";
    EXPECT_TRUE(clicks.isEmpty());
}

TEST_F(StatusNotifier, aChosenItemDoesItsOwnThing) {
    beginHosted();
    happen(3, "clicked");
    EXPECT_TRUE(waitUntil([this] { return !chosen.isEmpty(); }));
    happen(4, "hovered");
    for (const int none : {-7, 0, 2, 5, 1 << 30})
        happen(none, "clicked");
    auto group = host.call(BusMenu::objectPath, menuInterface, "EventGroup");
    sd_bus_message_append(group.get(), "a(isvu)", 2, 0, "closed", "i", 0, 0, 4, "clicked", "s", "x",
                          0);
    EXPECT_TRUE(host.ask(group));
    EXPECT_TRUE(waitUntil([this] { return chosen.size() == 2; }));
    EXPECT_EQ(chosen, (QStringList{QStringLiteral("Settings"), QStringLiteral("Quit")}));
}

TEST_F(StatusNotifier, whatItIsAskedAmissIsRefused) {
    beginHosted();
    auto call = host.call(BusMenu::objectPath, menuInterface, "Event");
    sd_bus_message_append(call.get(), "s", "clicked");
    EXPECT_FALSE(host.ask(call));
    auto property = host.call(BusMenu::objectPath, menuInterface, "GetProperty");
    sd_bus_message_append(property.get(), "is", 99, "label");
    EXPECT_FALSE(host.ask(property));
    auto save = host.call("/StatusNotifierItem", itemInterface, "Save");
    EXPECT_FALSE(host.ask(save));
}

TEST_F(StatusNotifier, afterItsEndItIsNoLongerThere) {
    beginHosted();
    item.reset();
    auto call = host.call("/StatusNotifierItem", itemInterface, "Activate");
    sd_bus_message_append(call.get(), "ii", 5, 5);
    EXPECT_FALSE(host.ask(call));
    host.vanish();
    host.appear();
    EXPECT_FALSE(
        waitUntil([this] { return host.items.size() > 1; }, std::chrono::milliseconds(200)));
}

TEST(SymbolImage, theColourStandsOutFromTheGround) {
    for (const auto &[ground, isLight] :
         {std::pair{QColor(Qt::white), true}, std::pair{QColor(0xe8, 0xe8, 0xe8), true},
          std::pair{QColor(0x3c, 0x3c, 0x3c), false}, std::pair{QColor(Qt::black), false},
          std::pair{QColor(0, 0, 160), false}, std::pair{QColor(255, 220, 0), true}}) {
        QImage image(22, 22, QImage::Format_RGB32);
        image.fill(ground);
        EXPECT_EQ(symbolColour(image).lightness() < 128, isLight) << qPrintable(ground.name());
    }
    QImage clear(22, 22, QImage::Format_ARGB32_Premultiplied);
    clear.fill(Qt::transparent);
    EXPECT_GT(symbolColour(clear).lightness(), 128) << "most trays are dark";
}

TEST(SymbolImage, onUnknownGroundItHasLightAndDark) {
    const QImage image = symbolImageForAnyGround(square, 24);
    const QColor middle = image.pixelColor(12, 12);
    const QColor edge = image.pixelColor(5, 12);
    EXPECT_GT(middle.lightness(), 220);
    EXPECT_EQ(middle.alpha(), 255);
    EXPECT_LT(edge.lightness(), 80);
    EXPECT_GT(edge.alpha(), 128);
    EXPECT_EQ(image.pixelColor(1, 1).alpha(), 0);
}

TEST(SymbolImage, aMissingSymbolIsAnEmptyPicture) {
    const QImage image = symbolImage({}, 22, Qt::white);
    EXPECT_EQ(image.size(), QSize(22, 22));
    EXPECT_EQ(image.pixelColor(11, 11).alpha(), 0);
}

TEST(SymbolImage, commandIsWrittenAsControl) {
    EXPECT_EQ(shortcutText(QStringLiteral(",")), QStringLiteral("Ctrl+,"));
    EXPECT_EQ(shortcutText(QStringLiteral("q")), QStringLiteral("Ctrl+Q"));
}

} // namespace
} // namespace pindle
