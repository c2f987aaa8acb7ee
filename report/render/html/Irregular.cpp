#include "Budget.hpp"
#include "Phrases.hpp"
#include "Sections.hpp"

namespace Report::Html {
namespace {

constexpr std::size_t longestIrregular = 500;

Fields irregularRow(std::string_view member, std::string what) {
    return Fields{}.set("member", shortened(member, longestIrregular)).set("what", std::move(what));
}

}  // namespace

void writeIrregular(std::ostream& out, const View& view) {
    const std::size_t all = view->oddities.size() + view->unread.size();
    if (all == 0) {
        return;
    }
    Rows rows;
    for (const Oddity& oddity : view->oddities) {
        if (rows.size() == view.allowance.rows) {
            break;
        }
        rows.push_back(irregularRow(oddity.member, shortened(oddity.what, longestIrregular)));
    }
    const std::size_t most = rows.size() + view.allowance.rows;
    for (const Unread& unread : view->unread) {
        if (rows.size() == most) {
            break;
        }
        rows.push_back(irregularRow(
            unread.member.empty() ? "the rest of the package" : unread.member,
            "not read, because of a limit: " + std::string{optionOf(unread.limit)} + " raises it"));
    }
    const std::size_t left = all - rows.size();
    fill(out, "irregular",
         Fields{}
             .set("id", view.id)
             .set("label", view.label)
             .set("level", levelText(view.level))
             .set("rows", std::move(rows))
             .set("leftOut", leftOutNote(left, "member")));
}

}  // namespace Report::Html
