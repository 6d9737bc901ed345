// What the wait for a click does in which order, where no frame of the screen would tell.

#include "message/commands.h"
#include "platform/display/key_codes.h"
#include "tests/unit/message/wait_ground.h"

namespace qv::testing {
namespace {

constexpr uint8_t Unlit = 20, Lit = 30;

class ClickWaitOrder : public WaitTest {
 protected:
  ClickWaitOrder() {
    createSurface("sysCut.surf", 64, 48).fill(Unlit);
    createSurface("sysCut1.surf", 64, 48).fill(Lit);
    host.pendant.onShow = [this](bool visible) {
      if (visible) pictures.push_back(host.pendantClient.surfaceView.surface.pixel(5, 5));
    };
    ShowPendant();
    pictures.clear();
  }
  std::vector<int32_t> pictures;  ///< what the pendant showed each time when it came
};

TEST_F(ClickWaitOrder, ThePendantIsUnlitBeforeItComesBack) {
  answer({FirstHoverResult + PendantRegion, FirstKeyResult + KeyEscape});
  answer({FirstKeyResult + KeyEscape, FirstKeyResult + KeyReturn});
  EXPECT_EQ(WaitClick(WaitWithoutLimit, 0), KeyReturn);
  EXPECT_EQ(pictures, std::vector<int32_t>{Unlit});
  EXPECT_EQ(Reg(HoverRegister), 0);
}

TEST_F(ClickWaitOrder, AnAdvanceBringsThePendantBackAsItWas) {
  answer({FirstHoverResult + PendantRegion, FirstKeyResult + KeyEscape});
  answer({FirstKeyResult + KeyReturn, FirstKeyResult + KeyReturn});
  EXPECT_EQ(WaitClick(WaitWithoutLimit, 0), KeyReturn);
  EXPECT_EQ(pictures, std::vector<int32_t>{Lit});
  EXPECT_EQ(Reg(HoverRegister), 1);
}

}  // namespace
}  // namespace qv::testing
