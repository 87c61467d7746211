#pragma once

#include "bench/FlushWatch.h"
#include "bench/KeyPresses.h"

#include <QThread>
#include <atomic>
#include <memory>
#include <optional>

class QLineEdit;

namespace pindle::bench {

/// What a run of the bench does.
struct PressPlan {
    std::string output;    ///< file for the samples
    int presses = 0;       ///< of the shortcut, with the application under test in front
    int strokes = 0;       ///< keys in the title of the last draft
    QString expectedTitle; ///< of every draft; another one fails the run
};

/// Presses the shortcut of the program it lives in, one press after the other has come to a ready
/// draft and the panel has been closed. Only looks on from places the program offers anyone. Main
/// thread; ends the event loop when it is through, or when something was not as planned.
class PressBench : public QObject {
public:
    explicit PressBench(PressPlan plan);
    ~PressBench() override;

private:
    /// Instants of one press; zero where not reached.
    struct Stamps {
        Instant handler = 0;
        Instant painted = 0;
        Instant ready = 0;
        bool hasBegun = false; ///< whether the press has begun to change the state
    };

    void watch();
    void press();
    void flushed();
    void settled();
    void beginStrokes();
    void stroke();
    void finish();
    void fail(const QString &why);
    bool showsDraft() const;

    PressPlan plan_;
    Samples samples_;
    QWidget *panel_ = nullptr;
    QLineEdit *title_ = nullptr;
    std::optional<FlushWatch> flushWatch_;
    QThread thread_;
    QObject hands_; ///< lives on `thread_`
    std::unique_ptr<KeyPresses> keys_;
    std::atomic<Instant> pressed_ = 0;
    Stamps stamps_;
    int press_ = 0;
    int stroke_ = 0;
    bool running_ = false;
};

} // namespace pindle::bench
