#include "actions_fixture.h"

#include <algorithm>

namespace pl::test {
namespace {

// A profile "Geheim" that brings a password of its own, and so can leave encryption to the profile.
class encryption : public ActionsFixture {
protected:
    encryption() {
        root.write("suite/Geheim.plp", "-sDEVICE=pdfwrite\r\nuserpassword=streng geheim\r\n");
        offerMachineJob();
    }
    // A mouse click on the encrypt box: the box takes it as a standard check box does, then the
    // dialog hears of it.
    void clickBox(dialog::JobDialog& d) {
        auto& box = d.control("ckEncodePDF");
        box.value = box.value == forms::Checked ? forms::Unchecked : forms::Checked;
        d.actions().ckEncodePDF_MouseUp(1, 0, 10, 10);
    }
    // The box's values after each of `onBox` clicks on the box, then of `onLabel` on its label.
    std::vector<int> valuesAfterClicks(dialog::JobDialog& d, int onBox, int onLabel) {
        std::vector<int> seen;
        for (int i = 0; i < onBox; ++i) {
            clickBox(d);
            seen.push_back(d.control("ckEncodePDF").value);
        }
        for (int i = 0; i < onLabel; ++i) {
            d.actions().lbEncodePDF_Click();
            seen.push_back(d.control("ckEncodePDF").value);
        }
        return seen;
    }
};

TEST_F(encryption, a_profile_with_its_own_password_adds_a_greyed_third_state_that_leaves_it_to_the_profile) {
    setUser("DefaultProfile", "Geheim");
    auto& d = openWithActions();
    EXPECT_TRUE(buttons().EncodeTriState);
    EXPECT_EQ(d.control("ckEncodePDF").value, forms::Grayed); // left to decide by default
    d.control("ckEncodePDF").value = forms::Unchecked;
    // The mouse goes from unticked to ticked to greyed; the label through all three.
    EXPECT_EQ(valuesAfterClicks(d, 2, 4), (std::vector<int>{1, 2, 0, 1, 2, 0}));

    // Another profile without one: nothing to leave to it, box and label only toggle.
    const auto& items = d.control("plProfile").items;
    d.selectProfile(static_cast<int>(std::find(items.begin(), items.end(), "High Quality") - items.begin()));
    ASSERT_EQ(d.control("plProfile").text, "High Quality");
    EXPECT_FALSE(buttons().EncodeTriState);
    EXPECT_EQ(d.control("ckEncodePDF").value, forms::Unchecked);
    EXPECT_EQ(valuesAfterClicks(d, 3, 3), (std::vector<int>{1, 0, 1, 0, 1, 0}));
}

} // namespace
} // namespace pl::test
