#include "support/pool_fixture.h"

#include <sstream>

#include "eval/calc.h"
#include "fraction/stepwise.h"

namespace tivelo::tests {
namespace {

const std::string kPlaces = "0000000000000000";

void append_limbs(std::vector<Limb>& limbs, std::string token) {
  const std::size_t star = std::min(token.find('*'), token.size());
  const int times = star < token.size() ? std::stoi(token.substr(star + 1)) : 1;
  token = kPlaces.substr(0, (8 - star % 8) % 8) + token.substr(0, star);
  for (std::size_t i = 0; i < token.size() * static_cast<unsigned>(times); i += 8)
    limbs.push_back(static_cast<Limb>(std::stoul(token.substr(i % token.size(), 8))));
}

}  // namespace

num* set(num* a, const std::string& text) {
  clear(junk(a));
  a->sign = text.starts_with('-') ? -1 : 1;
  std::istringstream words(text.substr(a->sign < 0));
  std::vector<Limb> limbs;
  for (std::string word; words >> word;) {
    const std::size_t point = word.find('.');
    if (word[0] == '<') a->shift = std::stoi(word.substr(2));
    if (word == "d2" || point < word.size()) a->dec = FF;
    if (point < word.size()) word = word.substr(0, point) + (word + kPlaces).substr(point + 1, 16);
    if (word == "1e8") limbs.push_back(kBase);
    if (word != "1e8" && word != "d2" && word[0] != '<') append_limbs(limbs, word);
  }
  a->len = static_cast<int>(limbs.size());
  std::ranges::copy(limbs, in_use(a).begin());
  return a;
}

numf set(numf f, const std::string& text) {
  const std::size_t slash = std::min(text.find('/'), text.size());
  set(f.c, text.substr(0, slash));
  set(f.m, slash < text.size() ? text.substr(slash + 1) : "1");
  return f;
}

num* junk(num* a) {
  std::fill_n(a->limbs, IS, Limb{87654321});
  a->sign = -1;
  a->end = IS;
  a->ext = a->shift = 0;
  int junk = 1;
  for (auto* field : {&a->dec, &a->rem, &a->rdiv, &a->dden, &a->len, &a->res, &a->imag, &a->used})
    *field = junk++;
  return a;
}

std::string raw(const num* a) {
  std::string text = a->sign < 0 ? "-" : "";
  for (const Limb limb : in_use(a)) text += std::to_string(limb) + " ";
  if (a->len > 0) text.pop_back();
  return text + (a->shift ? " <<" + std::to_string(a->shift) : "") + (a->dec == FF ? " d2" : "");
}

std::string fields(const num* a) {
  std::string text;
  for (const int field : {a->ext, a->rem, a->rdiv, a->dec, a->res, a->imag, a->used, a->dden})
    text += std::to_string(field) + " ";
  return text;
}

std::string state(const num* a) { return raw(a) + " | " + fields(a); }

mpz_class big(const num* a) {
  mpz_class value = 0;
  for (const Limb limb : in_use(a)) value = value * kBase + limb;
  return a->sign * value;
}

std::string value(const numf& f) {
  const mpz_class m = big(f.m);
  std::string text = mpz_class(abs(big(f.c))).get_str();
  if (text == "0" && m == 1) return f.c->sign < 0 ? "-0" : text;
  if (f.c->dec == FF) {
    text.insert(0, kPlaces + "0", 0, 17 - std::min<std::size_t>(text.size(), 17));
    text.insert(text.size() - 16, ".");
  }
  return (f.c->sign < 0 ? "-" : "") + text + (m == 1 ? "" : "/" + m.get_str());
}

std::vector<Row> table(const std::string& text) {
  std::vector<Row> rows(1);
  std::string field;
  for (const char c : text + ";") {
    if (c != ':' && c != ';' && c != '\n') {
      if (c != ' ' || !field.empty()) field += c;
      continue;
    }
    field.resize(field.find_last_not_of(' ') + 1);
    if (c != ':' && field.empty() && rows.back().all.empty()) continue;
    rows.back().all.push_back(std::exchange(field, ""));
    if (c != ':') rows.emplace_back();
  }
  rows.pop_back();
  return rows;
}

void each_alias(const std::string& x, const std::string& y, const std::function<int(Call&)>& op,
                const std::function<void(Call&, int)>& check) {
  for (int alias = 0; alias < 3; ++alias) {
    SCOPED_TRACE("to " + std::string(1, "rxy"[alias]) + " from " + x + " and " + y);
    num* const all[] = {junk(Mc[2]), set(Mc[0], x), set(Mc[1], y)};
    Call call{all[alias], all[1], all[2], fields(all[alias])};
    const std::string before[] = {state(all[0]), state(all[1]), state(all[2])};
    PoolTest::explained();
    const int status = op(call);
    if (status == kNotAllowed) continue;
    for (int i = 0; i < 3; ++i)
      EXPECT_EQ(i != alias || status < 0 ? state(all[i]) : before[i], before[i]);
    EXPECT_EQ(PoolTest::explained().empty(), status >= 0);
    EXPECT_EQ(call.r->end, IS);
    check(call, status);
  }
}

void PoolTest::evaluate(const std::string& rows) {
  for (const Row& row : table(rows)) {
    SCOPED_TRACE(row[0]);
    std::string expected = row[1];
    if (expected[0] == '=' && calc(&expected[1], &Cn, 1) > 0) expected = value(Cn);
    std::vector<char> text(row.all[0].begin(), row.all[0].end());
    text.push_back('\0');
    grant_steps();
    const int consumed = calc(text.data(), &Cn, 1);
    EXPECT_EQ(value(Cn), expected);
    EXPECT_EQ(printed(), row[2] + (row[2].ends_with("err") ? " " : ""));
    EXPECT_EQ(consumed, row[3].empty() ? static_cast<int>(text.size()) : row.number(3));
  }
}

}  // namespace tivelo::tests
