// The tick's enemy steps: the falling Jester mines, the current formation with its motion
// table, and the launches and updates of the Seeker Arses.
#include "game/gorvane.h"

namespace quillop {

void Gorvane::MoveMines() {
    for (j = 0; j <= 2; ++j)
        if (Mines[j].Active == kTrue) MoveMine(Mines[j]);
}

namespace {

// One row of the formation motion table: mx, my and which two Speeds scale them.
struct Motion {
    double mx, my;
    Double Gorvane::*sx;
    Double Gorvane::*sy;
};

constexpr Motion kRowMotion[8] = {
    {0.7, 0.7, &Gorvane::Speed1, &Gorvane::Speed2},   {1, -1, &Gorvane::Speed3, &Gorvane::Speed4},
    {-1.2, 1.2, &Gorvane::Speed5, &Gorvane::Speed6},  {-1.5, -1.5, &Gorvane::Speed1, &Gorvane::Speed3},
    {0.4, 0.4, &Gorvane::Speed2, &Gorvane::Speed4},   {0.8, -0.8, &Gorvane::Speed3, &Gorvane::Speed5},
    {-1.1, 1.1, &Gorvane::Speed4, &Gorvane::Speed6},  {-1.4, -1.4, &Gorvane::Speed5, &Gorvane::Speed1},
};

// The swarms of formation 3 move by these, one row per swarm member in update order.
constexpr Motion kSwarmMotion[4] = {
    {0.7, 0.7, &Gorvane::Speed1, &Gorvane::Speed2},
    {-0.4, 0.4, &Gorvane::Speed2, &Gorvane::Speed4},
    {0.7, -0.7, &Gorvane::Speed1, &Gorvane::Speed2},
    {-0.4, -0.4, &Gorvane::Speed2, &Gorvane::Speed4},
};

}  // namespace

void Gorvane::UpdateFormation() {
    Byte kind = 0;
    auto update = [&](SpriteRecord& arse, const Motion& m) {
        UpdateArse(arse, m.mx, m.my, this->*m.sx, this->*m.sy, kind);
    };
    // Three tests one after the other, each reading Formation afresh: a level-up from 1
    // to 2 or from 2 to 3 moves the new formation in the same tick.
    if (Formation == 1)
        for (int k = 0; k <= 7; ++k) update(ArseRowA[k], kRowMotion[k]);
    if (Formation == 2)
        for (int k = 0; k <= 7; ++k) update(ArseRowB[k], kRowMotion[k]);
    if (Formation == 3) {
        // The Queen's death uncloaks her swarm at the Knight's place and wakes the Knight.
        if (Queen.Active == kTrue) {
            UpdateArse(Queen, 1.7, 1.7, Speed1, Speed2, kind);
            if (Queen.Active == kFalse) {
                Knight.Active = kTrue;
                for (SpriteRecord* r : {&ArseRowA[0], &ArseRowA[4], &ArseRowB[0], &ArseRowB[4]}) {
                    CopyPosition(*r, Knight);
                    r->Active = kTrue;
                }
            }
        }
        if (Queen.Active == kFalse) {
            update(ArseRowA[0], kSwarmMotion[0]);
            update(ArseRowA[4], kSwarmMotion[1]);
            update(ArseRowB[0], kSwarmMotion[2]);
            update(ArseRowB[4], kSwarmMotion[3]);
        }
        // The Knight's death uncloaks its swarm where the Queen died.
        if (Knight.Active == kTrue) {
            UpdateArse(Knight, 2, -2, Speed3, Speed4, kind);
            if (Knight.Active == kFalse) {
                for (SpriteRecord* r : {&ArseRowA[1], &ArseRowA[5], &ArseRowB[1], &ArseRowB[5]}) {
                    CopyPosition(*r, Queen);
                    r->Active = kTrue;
                }
                KnightSwarm = kTrue;
            }
        }
        if (Knight.Active == kFalse && KnightSwarm == kTrue) {
            update(ArseRowA[1], kSwarmMotion[0]);
            update(ArseRowA[5], kSwarmMotion[1]);
            update(ArseRowB[1], kSwarmMotion[2]);
            update(ArseRowB[5], kSwarmMotion[3]);
        }
    }
}

void Gorvane::LaunchSeekers() {
    SeekerTimer = SeekerTimer + 1;
    auto launch = [&](SpriteRecord& seeker) {
        mod_.playSound(Sound::Seeker);
        seeker.Top = static_cast<Single>(rnd_.next() * H());
        seeker.Left = -seeker.Width;
        seeker.Active = kTrue;
    };
    if (SeekerTimer > 200) {
        SeekerTimer = 0;
        if (Seekers[0].Active == kFalse && PuckInPlay == kTrue) launch(Seekers[0]);
    }
    if (SeekerTimer > 100 && Seekers[0].Active == kTrue) {
        SeekerTimer = 0;
        if (Seekers[1].Active == kFalse && PuckInPlay == kTrue) launch(Seekers[1]);
    }
    if (SeekerTimer > 50 && Seekers[1].Active == kTrue) {
        SeekerTimer = 0;
        if (Seekers[2].Active == kFalse && PuckInPlay == kTrue) launch(Seekers[2]);
    }
}

void Gorvane::UpdateSeekers() {
    Byte kind = 1;
    const Double none = 0;
    for (i = 0; i <= 3; ++i)
        if (Seekers[i].Active != kFalse) UpdateArse(Seekers[i], 0, 0, none, none, kind);
}

}  // namespace quillop
