#pragma once
// What the hhdb filter reads of a study database's games, as plain text
// functions: the award in the Event tag, the status codes in the Black tag,
// and the fields of the game's first comment.
//
// The first comment holds fields of the form `name: value`, separated by
// `;` (a PGN reader makes every run of white space in a comment one blank,
// so lines cannot separate them):
//
//     {diagram: 12a; egdiagram: 341; gbr: 0130.12 g1a8; search: KRB; stipulation: +}
//
// A name counts only at the start of the comment or of a field (blanks
// before it are skipped), and its value runs to the next `;`, blanks
// trimmed. `gbr` holds the material code, four digits for queens,
// rooks, bishops and knights, a dot and two for the pawns, then, after a
// blank, the squares of the two kings. `composer` may hold the full list of
// composers when the White tag could not (status code MC in Black).

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnfold::zmf {

// The text whose presence in a comment of the position the codes 0 to 4
// test ("<cook" and "<minor_dual" without their ">"), and empty for any
// other code.
std::string_view hhdbMarker(std::uint32_t code);
// The status code of the Black tag that the codes 23 to 38 test, and empty
// for any other code.
std::string_view hhdbStatusCode(std::uint32_t code);

// The Black tag has a "U" directly followed by one of `digits`.
bool hhdbHasUnsoundMark(std::string_view black, std::string_view digits);
// A game without a Black tag is sound, cooked or not; with one, a mark U3
// to U5 makes it unsound, and so does U1 or U2 in a cooked game.
bool hhdbSound(const std::optional<std::string>& black, bool cooked);
bool hhdbUnsound(const std::optional<std::string>& black, bool cooked);

// The award form's choices: which awards it accepts, and what it gives.
struct HHDBAwardForm {
    bool special = false;
    bool nonspecial = false;
    bool sortable = false;
    bool max = false;
    std::uint32_t kind = 0;  // 0 any, 1 prize, 2 honourable mention, 3 commendation
};

// The award of an Event text such as "2/5.sp.c" (second to fifth special
// commendation), as the form asks for it: the first rank, the last rank
// with `max`, or a number that sorts the awards with `sortable`. None when
// the text is no award or not one the form accepts.
std::optional<std::int64_t> hhdbAward(std::string_view event, const HHDBAwardForm& form);

// The value of the field `name` of the first comment, when it has one.
std::optional<std::string> hhdbCommentField(std::string_view comment, std::string_view name);
// A section of the gbr field: code 15 the whole field, 16 the kings'
// squares, 17 the piece digits, 18 the material (pieces and pawns), 19 the
// pawn digits.
std::optional<std::string> hhdbGbrSection(std::string_view gbr, std::uint32_t code);
// The composers: the White tag, or, when the Black tag says there were too
// many for it (MC), the composer field of the first comment if it has one.
std::optional<std::string> hhdbComposer(const std::optional<std::string>& white,
                                        const std::optional<std::string>& black,
                                        const std::optional<std::string>& firstComment);
// The field as a number, when it is one in full.
std::optional<std::int64_t> hhdbNumber(std::string_view field);

}  // namespace tarnfold::zmf
