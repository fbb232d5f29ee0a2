#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <limits>
#include <set>
#include <sstream>
#include <string>
#include <utility>

#include "shapes/shift_tables.h"
#include "simulation/step_table.h"

// What can be said of the shift and step tables without saying them again.
namespace {

using Row3 = std::array<int, 3>;
using Matrix = std::array<Row3, 3>;  // rows and columns are X, Y, Z

constexpr Matrix identity{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
constexpr Matrix mirror_x{{{-1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

Matrix operator*(const Matrix& a, const Matrix& b) {
  Matrix product{};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j)
      for (std::size_t k = 0; k < 3; ++k) product[i][j] += a[i][k] * b[k][j];
  return product;
}

Matrix transposed(const Matrix& m) {
  Matrix result{};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) result[i][j] = m[j][i];
  return result;
}

int determinant(const Matrix& m) {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
         m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

Matrix matrix(shapes::Component x, shapes::Component y, shapes::Component z) {
  Matrix m{};
  const std::array<shapes::Component, 3> rows{x, y, z};
  for (std::size_t i = 0; i < 3; ++i)
    m[i][static_cast<std::size_t>(rows[i].source)] = rows[i].negated ? -1 : 1;
  return m;
}
Matrix matrix(const shapes::LatheRow& row) {
  return matrix(row.x, shapes::Ys, row.z);
}

/// The turn of a solid on a station whose turret angle is 0, as far as it shows in X and Z.
Matrix turn_in_xz(simulation::Steps steps) {
  constexpr Matrix quarter_about_y{{{0, 0, 1}, {0, 1, 0}, {-1, 0, 0}}};
  constexpr Matrix half_about_z{{{-1, 0, 0}, {0, -1, 0}, {0, 0, 1}}};
  Matrix turn = identity;
  if ((steps & simulation::A) != 0) turn = quarter_about_y * turn;
  if ((steps & simulation::B) != 0) turn = half_about_z * quarter_about_y * quarter_about_y * turn;
  if ((steps & simulation::C) != 0) turn = half_about_z * turn;
  turn[1] = {0, 1, 0};
  return turn;
}

/// Which components every row moves, and that it keeps lengths: each saved one comes once, with a sign.
bool is_signed_permutation(const Matrix& m) {
  return m * transposed(m) == identity;
}

std::string signs(const auto& rows, auto&& matrix_of) {
  std::string result;
  for (const auto& row : rows) {
    const Matrix m = matrix_of(row);
    EXPECT_TRUE(is_signed_permutation(m)) << "row " << result.size();
    result += determinant(m) > 0 ? '+' : '-';
  }
  return result;
}

TEST(Geometry, RowsKeepLengthsAndAreRotationsOrReflections) {
  const auto of_tool = [](const shapes::OrientationRow& row) { return matrix(row.x, row.y, row.z); };
  EXPECT_EQ(signs(shapes::orientation_rows, of_tool), "++++++");
  const auto of_lathe_tool = [](const shapes::LatheRow& row) { return matrix(row); };
  EXPECT_EQ(signs(shapes::table_a, of_lathe_tool), "+-+--+-+");
  EXPECT_EQ(signs(shapes::table_b, of_lathe_tool), "-+-++-+-");
  EXPECT_EQ(signs(shapes::table_c, of_lathe_tool), "++-+--+-");
}

TEST(Geometry, EveryPositionGivesAShiftOfItsOwn) {
  std::set<std::pair<int, int>> without_row;
  for (int c = 11; c <= 18; ++c) {
    std::set<Matrix> results;
    std::size_t rows = 0;
    for (int a = 11; a <= 18; ++a) {
      const shapes::LatheRow* row = shapes::lathe_row(a, c);
      if (row == nullptr) {
        without_row.emplace(a, c);
        continue;
      }
      ++rows;
      results.insert(matrix(*row));
    }
    EXPECT_EQ(results.size(), rows) << "database position " << c;
  }
  EXPECT_EQ(without_row, (std::set<std::pair<int, int>>{{13, 15}, {16, 18}}));
}

TEST(Geometry, FarPositionsHaveNoRow) {
  constexpr std::int32_t low = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t high = std::numeric_limits<std::int32_t>::max();
  for (const auto& [a, c] :
       {std::pair{23, 11}, {24, 17}, {11, 0}, {0, 11}, {low, high}, {high, low}, {low, 17}}) {
    EXPECT_EQ(shapes::lathe_row(a, c), nullptr) << a << " from " << c;
    EXPECT_EQ(simulation::steps_for(a, c), simulation::outside) << a << " from " << c;
  }
}

/// Whether the shift of a tool and its solid move alike from the database position `c` to `a`: "=" as they
/// stand, "x" with X counted the other way, "=x" both, "no" neither; "-" where the shift has no row.
std::string agreement(int a, int c) {
  const shapes::LatheRow* row = shapes::lathe_row(a, c);
  if (row == nullptr) return "-";
  const Matrix moved = matrix(*row) * transposed(matrix(*shapes::lathe_row(c, c)));
  const Matrix turned =
      turn_in_xz(simulation::steps_for(a, c)) * transposed(turn_in_xz(simulation::steps_for(c, c)));
  std::string cell;
  if (moved == turned) cell += '=';
  if (mirror_x * moved * mirror_x == turned) cell += 'x';
  return cell.empty() ? "no" : cell;
}

TEST(Geometry, ThePageTellsWhereShiftAndSolidGoTogether) {
  std::ostringstream table;
  for (int c = 11; c <= 18; ++c) {
    table << "| " << c << " |";
    for (int a = 11; a <= 18; ++a) table << ' ' << agreement(a, c) << " |";
    table << '\n';
  }
  std::ifstream file("docs/geometry.md");
  const std::string page{std::istreambuf_iterator<char>(file), {}};
  EXPECT_NE(page.find(table.str()), page.npos) << "docs/geometry.md should have\n" << table.str();
}

}  // namespace
