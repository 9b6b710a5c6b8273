// UpdateArse: one enemy's move, wrap, contacts and drawing; the kill's points; the level
// table; the win.
#include "game/gorvane.h"

namespace quillop {
namespace {

// Strict overlap of two records; touching edges do not count.
bool overlaps(const SpriteRecord& a, const SpriteRecord& b) {
    return !(rounded(static_cast<double>(b.Left) + b.Width) <= a.Left ||
             rounded(static_cast<double>(a.Left) + a.Width) <= b.Left ||
             rounded(static_cast<double>(b.Top) + b.Height) <= a.Top ||
             rounded(static_cast<double>(a.Top) + a.Height) <= b.Top);
}

}  // namespace

void Gorvane::UpdateArse(SpriteRecord& arse, double mx, double my, const Double& sx, const Double& sy,
                         Byte& kind) {
    if (arse.Active == kTrue) paint(arse.Mask, arse.Left, arse.Top);

    if (kind == 1) {
        // A Seeker steers a fifteenth of the way to the puck's top-left corner, in Singles.
        arse.Left = arse.Left + (shapePuck.Left - arse.Left) / 15.0f;
        arse.Top = arse.Top + (shapePuck.Top - arse.Top) / 15.0f;
    } else {
        const double r1 = rnd_.next();
        arse.Left = static_cast<Single>(arse.Left + mx * sx + static_cast<float>(r1 * Jitter));
        const double r2 = rnd_.next();
        arse.Top = static_cast<Single>(arse.Top + my * sy + static_cast<float>(r2 * Jitter));
    }

    if (rounded(static_cast<double>(T()) - arse.Height) > arse.Top) arse.Top = H() - T();
    if (rounded(static_cast<double>(H()) - T()) < arse.Top) arse.Top = T() - arse.Height;
    if (arse.Left > W()) arse.Left = L() - arse.Width;
    if (rounded(static_cast<double>(L()) - arse.Width) > arse.Left) arse.Left = W();

    ArseKilled = kFalse;
    for (j = 0; j <= 2; ++j) {
        SpriteRecord& mine = Mines[j];
        if (PuckDead != kTrue && overlaps(arse, mine) && arse.Active == kTrue && mine.Active != kFalse) {
            ArseKilled = kTrue;
            arse.Active = kFalse;
            mod_.playSound(Sound::ArseDeath);
            paint(mine.Mask, mine.Left, mine.Top);
            mine.Active = kFalse;
        }
    }

    if (rounded(PuckRight) > arse.Left && rounded(static_cast<double>(arse.Left) + arse.Width) > rounded(PuckLeft) &&
        rounded(PuckBottom) > arse.Top && rounded(static_cast<double>(arse.Top) + arse.Height) > rounded(PuckTop) &&
        PuckDead == kFalse && arse.Active == kTrue && puckVisible()) {
        arse.Active = kFalse;
        ArseKilled = kTrue;
        mod_.playSound(Sound::ArseDeath);
        if (Energized == kFalse) {  // an energized puck kills without harm
            Lives = Lives - 1;
            BlowUp();
        }
    }

    if (arse.Active == kTrue) paint(arse.Picture, arse.Left, arse.Top);
    if (ArseKilled == kFalse) return;

    mod_.Score = mod_.Score + 1000;
    if (kind == 1) mod_.Score = mod_.Score + 1500;
    // Each ordinary kill advances KillCount by two around the checks, so the level table
    // and the win see the odd value 2k - 1 at the k-th kill.
    if (kind == 0) KillCount = KillCount + 1;
    if (Lives > 0) LevelUp();
    if (KillCount == 155) Win();
    if (kind == 0) KillCount = KillCount + 1;
    if (kind == 1) SeekerTimer = 0;
}

namespace {

enum class Arming { RowA, RowB, Queen };

struct LevelRow {
    int killCount, level, formation;
    std::uint32_t background;
    Arming arming;
    int energizedTime;
};

constexpr LevelRow kLevelTable[] = {
    {15, 2, 2, kBlack, Arming::RowB, 120},   {31, 3, 3, kBlack, Arming::Queen, 100},
    {51, 4, 1, kBlack, Arming::RowA, 80},    {67, 5, 2, kBlack, Arming::RowB, 70},
    {83, 6, 3, kBlack, Arming::Queen, 60},   {103, 7, 1, kBlack, Arming::RowA, 40},
    {119, 8, 2, kBlack, Arming::RowB, 25},   {135, 9, 3, kWhite, Arming::Queen, 10},
};

}  // namespace

void Gorvane::LevelUp() {
    for (const LevelRow& row : kLevelTable) {
        if (KillCount != row.killCount) continue;
        Lives = Lives + 1;
        Formation = row.formation;
        Level = row.level;
        surface_.setBackColor(row.background);
        switch (row.arming) {
            case Arming::RowA:
                ResetField();  // only the row-A levels re-centre the field
                ArmArseRowA();
                break;
            case Arming::RowB: ArmArseRowB(); break;
            case Arming::Queen: ArmQueen(); break;
        }
        EnergizedTime = row.energizedTime;
        return;
    }
}

void Gorvane::Win() {
    PlaceButtons();
    PlaceInsertCoin();
    Label7.Caption = "You Win !!";
    Label7.Visible = kTrue;
    cmdPlay.Visible = kTrue;
    PuckInPlay = kFalse;
    mod_.GameOver = kTrue;
    ParkPuck();
    mod_.playSound(Sound::GoodJob);
    if (mod_.Score > mod_.Highscore) mod_.host().showHighscoreDialog();
    mod_.ShowHighscoreCaption();
}

}  // namespace quillop
