#include "replay/trace.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <initializer_list>

#include "game/base/utf8_text.h"

namespace quillop::replay {
namespace {

class Line {
public:
    explicit Line(std::string& out) : out_(out) { out_ += '{'; }
    ~Line() { out_ += "}\n"; }

    Line& key(const char* name) {
        if (!first_) out_ += ',';
        first_ = false;
        out_ += '"';
        out_ += name;
        out_ += "\":";
        return *this;
    }
    // Shortest text that reads back as the same double; a Single goes in as its exact double.
    void number(double v) {
        if (!std::isfinite(v)) {
            out_ += "null";  // JSON has no infinities; the rules should never make one
            return;
        }
        char buffer[32];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, v);
        out_.append(buffer, result.ptr);
    }
    void boolean(bool b) { out_ += b ? "true" : "false"; }
    void flag(Boolean b) { boolean(b != kFalse); }
    // A name is whatever bytes were typed; JSON wants UTF-8, so a byte that is not is
    // written as U+FFFD.
    void text(const std::string& s) {
        out_ += '"';
        char32_t cp = 0;
        for (std::size_t i = 0; i < s.size();) {
            const std::size_t n = utf8SequenceAt(s, i, cp);
            if (n == 0) {
                out_ += "\\ufffd";
                ++i;
                continue;
            }
            if (cp == '"' || cp == '\\') {
                out_ += '\\';
                out_ += static_cast<char>(cp);
            } else if (cp < 0x20) {
                char buffer[8];
                std::snprintf(buffer, sizeof buffer, "\\u%04x", static_cast<unsigned>(cp));
                out_ += buffer;
            } else {
                out_.append(s, i, n);
            }
            i += n;
        }
        out_ += '"';
    }
    void open() { out_ += '['; }
    void close() { out_ += ']'; }
    void comma() { out_ += ','; }
    void sprite(const SpriteRecord& r, bool withActive = true) {
        open();
        number(r.Left);
        comma();
        number(r.Top);
        if (withActive) {
            comma();
            flag(r.Active);
        }
        close();
    }
    template <typename Table>
    void sprites(const Table& table, int count) {
        open();
        for (int k = 0; k < count; ++k) {
            if (k) comma();
            sprite(table[k]);
        }
        close();
    }
    // Comma-separated, without brackets, so a list can mix numbers and flags.
    void values(std::initializer_list<double> list) {
        bool firstValue = true;
        for (const double v : list) {
            if (!firstValue) comma();
            firstValue = false;
            number(v);
        }
    }
    void numbers(std::initializer_list<double> list) {
        open();
        values(list);
        close();
    }

private:
    std::string& out_;
    bool first_ = true;
};

}  // namespace

void appendTraceLine(std::string& out, Program& program, std::uint64_t ticksRun, const std::string& caption) {
    Gorvane& g = program.gorvane();
    const ModQuillop& mod = program.mod;
    const ShapeModel& puck = g.shapePuck;
    Line line(out);
    line.key("t").number(static_cast<double>(ticksRun));
    line.key("score").number(mod.Score);
    line.key("level").number(g.Level);
    line.key("lives").number(g.Lives);
    line.key("kills").number(g.KillCount);
    line.key("formation").number(g.Formation);
    line.key("jitter").number(g.Jitter);
    line.key("eticks").number(g.EnergizedTicks);
    line.key("seekert").number(g.SeekerTimer);
    line.key("gameover").flag(mod.GameOver);
    line.key("inplay").flag(g.PuckInPlay);
    line.key("dead").flag(g.PuckDead);
    line.key("energized").flag(g.Energized);
    line.key("highscore").number(mod.Highscore);
    line.key("highscorer").text(mod.Highscorer);
    line.key("caption").text(caption);
    line.key("timer").flag(g.Timer1.Enabled);
    line.key("puck").open();
    line.values({puck.Left, puck.Top, puck.Width, puck.Height});
    line.comma();
    line.flag(puck.Visible);
    line.comma();
    line.values({static_cast<double>(puck.Shape), static_cast<double>(puck.FillStyle),
                 static_cast<double>(puck.FillColor)});
    line.close();
    line.key("move").numbers({g.XMove, g.YMove, g.Increment});
    line.key("paddle").numbers({g.PaddleEdgeX1, g.PaddleEdgeY1, g.PaddleEdgeX2, g.PaddleWidth});
    line.key("rowa").sprites(g.ArseRowA, 8);
    line.key("rowb").sprites(g.ArseRowB, 8);
    line.key("queen").sprite(g.Queen);
    line.key("knight").sprite(g.Knight);
    line.key("seekers").sprites(g.Seekers, 4);
    line.key("mines").sprites(g.Mines, 3);
    line.key("epod").numbers({g.EnergypodSprite.Left, g.EnergypodSprite.Top});
    line.key("ppod").sprite(g.Pointspod);
    line.key("stopper").sprite(g.Sidestopper);
    line.key("catfish").sprite(g.Catfish, false);
    line.key("label").text(g.Label7.Visible != kFalse ? g.Label7.Caption : std::string());
    line.key("play").flag(g.cmdPlay.Visible);
    line.key("drop").flag(g.cmdDrop.Visible);
    line.key("draws").number(static_cast<double>(g.rnd().draws()));
}

}  // namespace quillop::replay
