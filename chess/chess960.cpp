#include <array>
#include <cstdlib>

#include "chess/board.h"

namespace tarnfold {

namespace {

// The ten ways of placing two knights on five free squares, in the order of
// the standard numbering.
constexpr int knightPlacements[10][2] = {{0, 1}, {0, 2}, {0, 3}, {0, 4}, {1, 2},
                                         {1, 3}, {1, 4}, {2, 3}, {2, 4}, {3, 4}};

constexpr std::array<std::string_view, 11> chess960Errors = {
    "success",
    "bad string size, expected 8 characters",
    "unrecognized piece character",
    "bad pawn count, expected 0 pawns",
    "bad knight count, expected 2 knights",
    "bad bishop count, expected 2 bishops",
    "bad rook count, expected 2 rooks",
    "bad queen count, expected 1 queen",
    "bad king count, expected 1 king",
    "bishops must be on opposite color squares",
    "king must be located between the two rooks",
};

// Puts letter on the n-th free file.
void placeOnFree(std::string& rank, int n, char letter) {
    for (char& c : rank)
        if (c == ' ' && n-- == 0) {
            c = letter;
            return;
        }
}

}  // namespace

std::string chess960Position(int number) {
    if (number < 0 || number >= 960) return {};
    std::string rank(8, ' ');
    // Light-squared bishop on b, d, f or h; dark-squared on a, c, e or g.
    rank[2 * (number % 4) + 1] = 'B';
    number /= 4;
    rank[2 * (number % 4)] = 'B';
    number /= 4;
    placeOnFree(rank, number % 6, 'Q');
    number /= 6;
    const int first = knightPlacements[number][0], second = knightPlacements[number][1];
    // The second index counts free files before the first knight goes in.
    placeOnFree(rank, second, 'N');
    placeOnFree(rank, first, 'N');
    placeOnFree(rank, 0, 'R');
    placeOnFree(rank, 0, 'K');
    placeOnFree(rank, 0, 'R');
    return rank;
}

int validateChess960(std::string_view letters) {
    if (letters.size() != 8) return -1;
    std::array<int, 6> count = {0, 0, 0, 0, 0, 0};
    static constexpr std::string_view types = "PNBRQK";
    for (char c : letters) {
        const size_t type = types.find(c);
        if (type == std::string_view::npos) return -2;
        ++count[type];
    }
    if (count[0] != 0) return -3;
    if (count[1] != 2) return -4;
    if (count[2] != 2) return -5;
    if (count[3] != 2) return -6;
    if (count[4] != 1) return -7;
    if (count[5] != 1) return -8;
    const size_t bishop1 = letters.find('B'), bishop2 = letters.find('B', bishop1 + 1);
    if ((bishop1 & 1) == (bishop2 & 1)) return -9;
    const size_t rook1 = letters.find('R'), rook2 = letters.find('R', rook1 + 1);
    const size_t king = letters.find('K');
    if (king < rook1 || king > rook2) return -10;

    const int light = int(bishop1 & 1 ? bishop1 : bishop2);
    const int darkFile = int(bishop1 & 1 ? bishop2 : bishop1);
    std::string rank(letters);
    rank[light] = rank[darkFile] = ' ';
    // The queen counted among the six files the bishops leave.
    const size_t queenFile = letters.find('Q');
    int queen = 0;
    for (size_t file = 0; file < queenFile; ++file)
        if (rank[file] != ' ') ++queen;
    rank[queenFile] = ' ';
    // Knights counted among the five files left once bishops and queen are out.
    std::string rest;
    for (int file = 0; file < 8; ++file)
        if (rank[file] != ' ') rest.push_back(rank[file]);
    const int knight1 = int(rest.find('N')), knight2 = int(rest.find('N', knight1 + 1));
    int knights = 0;
    while (knightPlacements[knights][0] != knight1 || knightPlacements[knights][1] != knight2) ++knights;
    return ((knights * 6 + queen) * 4 + darkFile / 2) * 4 + (light - 1) / 2;
}

std::string_view chess960ErrorText(int code) {
    const long long index = std::llabs(code);
    return index < (long long)chess960Errors.size() ? chess960Errors[index] : "invalid error";
}

}  // namespace tarnfold
