// The parser and the printer take their binding powers from one table. Here
// every nesting of two operators of a family is printed and checked against
// the parser itself: the printed text keeps the parentheses exactly when
// the text without them would be read with another grouping.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "stand_in_parse.h"

namespace tarnfold::zmf {
namespace {

class BindingPowers : public StandInParse {
protected:
    // Writes both nestings of `outer` around `inner`, as the printer writes
    // them, and checks each printed form. Counts the nestings checked.
    void checkNestings(const std::string& operand, const std::string& inner, const std::string& outer) {
        std::string innerText = operand + inner + operand;
        check("(" + innerText + ")" + outer + operand, innerText + outer + operand);
        check(operand + inner + "(" + operand + outer + operand + ")",
              operand + inner + operand + outer + operand);
    }

    // The same for a prefix filter and an infix operator.
    void checkPrefixNestings(const std::string& operand, const std::string& prefix, const std::string& op) {
        check(prefix + "(" + operand + op + operand + ")", prefix + operand + op + operand);
        check("(" + prefix + operand + ")" + op + operand, prefix + operand + op + operand);
    }

    // `grouped` must be printed bare when the bare text reads the same, and
    // as it is otherwise.
    void check(const std::string& grouped, const std::string& bare) {
        SCOPED_TRACE(grouped);
        std::string bareTree = tree(bare);
        std::string groupedTree = tree(grouped);
        ASSERT_EQ(groupedTree.rfind("no tree", 0), std::string::npos) << groupedTree;
        EXPECT_EQ(printed(grouped), bareTree == groupedTree ? bare : grouped);
        ++checked;
    }

    int checked = 0;
};

// `!=` is left out: between numbers it gives a Boolean, which no other
// operator of the family takes.
const std::vector<std::string> numericOperators = {" + ",  " - ", " * ",  " / ", " % ",
                                                   " == ", " < ", " <= ", " > ", " >= "};
const std::vector<std::string> setOperators = {" | ", " & ", " attacks ", " attackedby "};

TEST_F(BindingPowers, EveryNestingOfTwoInfixOperatorsPrintsAsItParses) {
    for (const std::string& inner : numericOperators)
        for (const std::string& outer : numericOperators) checkNestings("znum", inner, outer);
    for (const std::string& inner : setOperators)
        for (const std::string& outer : setOperators) checkNestings("zset", inner, outer);
    for (const char* inner : {" and ", " or "})
        for (const char* outer : {" and ", " or "}) checkNestings("zbool", inner, outer);
    checkNestings("zpos", " : ", " : ");
    EXPECT_EQ(checked, 2 * (10 * 10 + 4 * 4 + 2 * 2 + 1));

    // Spot checks that the comparison above has something to compare.
    EXPECT_EQ(printed("(znum + znum) * znum"), "(znum + znum) * znum");
    EXPECT_EQ(printed("znum < (znum < znum)"), "znum < znum < znum");
    EXPECT_EQ(printed("(zset | zset) attacks zset"), "(zset | zset) attacks zset");
    EXPECT_EQ(printed("znum != (znum + znum)"), "znum != znum + znum");
    EXPECT_EQ(printed("(znum != znum) or zbool"), "znum != znum or zbool");
    EXPECT_EQ(printed("zbool and (znum != znum)"), "zbool and znum != znum");
}

TEST_F(BindingPowers, EveryPrefixFilterReachesAsFarAsItsOperandPower) {
    for (const char* prefix : {"abs ", "sqrt ", "-", "`"})
        for (const std::string& op : numericOperators) checkPrefixNestings("znum", prefix, op);
    for (const char* prefix : {"~", "dark ", "light "})
        for (const std::string& op : setOperators) checkPrefixNestings("zset", prefix, op);
    for (const char* op : {" and ", " or "}) checkPrefixNestings("zbool", "not ", op);
    EXPECT_EQ(checked, 2 * (4 * 10 + 3 * 4 + 2));

    EXPECT_EQ(printed("abs (znum + znum)"), "abs znum + znum");
    EXPECT_EQ(printed("-(znum + znum)"), "-(znum + znum)");
    EXPECT_EQ(printed("dark (zset attacks zset)"), "dark (zset attacks zset)");
    EXPECT_EQ(printed("(not zbool) and zbool"), "not zbool and zbool");
}

}  // namespace
}  // namespace tarnfold::zmf
