#include "support/pool_fixture.h"

#include <sstream>

#include "base/precision.h"
#include "bigint/pool.h"
#include "eval/calc.h"

namespace tivelo::tests {
namespace {

std::string channels[2];  // console, explanations

// Appends the limbs that a token stands for.
void append_limbs(std::vector<Limb>& limbs, std::string token) {
  if (token == "1e8") return limbs.push_back(kBase);
  const std::size_t star = std::min(token.find('*'), token.size());
  int times = star < token.size() ? std::stoi(token.substr(star + 1)) : 1;
  token.resize(star);
  token.insert(0, (8 - token.size() % 8) % 8, '0');
  for (; times > 0; --times)
    for (std::size_t i = 0; i < token.size(); i += 8)
      limbs.push_back(static_cast<Limb>(std::stoul(token.substr(i, 8))));
}

std::unique_ptr<Out> into(std::string& text) {
  auto out = std::make_unique<Out>();
  out->drain = [](void* context, const char* data, std::size_t size) {
    static_cast<std::string*>(context)->append(data, size);
    return true;
  };
  out->context = &text;
  return out;
}

}  // namespace

num* set(num* a, const std::string& text) {
  clear(junk(a));
  const bool negative = text.starts_with('-');
  std::istringstream words(text.substr(negative));
  std::vector<Limb> limbs;
  for (std::string word; words >> word;) {
    const std::size_t point = word.find('.');
    if (word.starts_with("<<")) {
      a->shift = std::stoi(word.substr(2));
    } else if (word == "d2" || point != std::string::npos) {
      a->dec = FF;
    }
    if (point != std::string::npos) {
      word.resize(point + 17, '0');
      word.erase(point, 1);
    }
    if (word[0] != '<' && word[0] != 'd') append_limbs(limbs, word);
  }
  a->sign = negative ? -1 : 1;
  a->len = static_cast<int>(limbs.size());
  std::ranges::copy(limbs, in_use(a).begin());
  return a;
}

numf set(numf f, const std::string& text) {
  const std::size_t slash = text.find('/');
  set(f.c, text.substr(0, slash));
  set(f.m, slash == std::string::npos ? "1" : text.substr(slash + 1));
  return f;
}

num* junk(num* a) {
  std::fill_n(a->limbs, IS, Limb{87654321});
  a->sign = -1;
  a->len = 5;
  a->end = IS;
  a->ext = a->shift = 0;
  int field = 71;
  for (std::int32_t* junked : {&a->rem, &a->rdiv, &a->dden, &a->res, &a->imag, &a->used})
    *junked = field++;
  a->dec = 1;
  return a;
}

std::string raw(const num* a) {
  std::string text = a->sign < 0 ? "-" : "";
  for (const Limb limb : in_use(a)) text += std::to_string(limb) + " ";
  if (a->len > 0) text.pop_back();
  if (a->shift != 0) text += " <<" + std::to_string(a->shift);
  return text + (a->dec == FF ? " d2" : "");
}

std::string fields(const num* a) {
  std::string text;
  for (const int field : {a->ext, a->rem, a->rdiv, a->dden, a->dec, a->res, a->imag, a->used})
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
  if (text == "0" && m == 1) return text;
  if (f.c->dec == FF) {
    if (text.size() < 17) text.insert(0, 17 - text.size(), '0');
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
    num* const operands[] = {Mc[2], set(Mc[0], x), set(Mc[1], y)};
    Call call{operands[alias], operands[1], operands[2], ""};
    if (alias == 0) junk(call.r);
    call.fields_before = fields(call.r);
    const std::string before[] = {state(Mc[2]), state(call.x), state(call.y)};
    channels[1].clear();
    const int status = op(call);
    if (status == kNotAllowed) continue;
    for (int i = 0; i < 3; ++i)
      EXPECT_EQ(i != alias || status < 0 ? state(operands[i]) : before[i], before[i]);
    EXPECT_EQ(call.r->end, IS);
    flush(*explanations);
    EXPECT_EQ(channels[1].empty(), status >= 0);
    check(call, status);
  }
}

PoolTest::PoolTest() : console_(into(channels[0])), explanations_(into(channels[1])) {
  console = console_.get();
  explanations = explanations_.get();
  for (std::string& text : channels) text.clear();
  use_precision(0);
}

PoolTest::~PoolTest() {
  release(numbers_);
  console = explanations = nullptr;
  ROF[0] = 0;
}

void PoolTest::use_precision(int digit) {
  release(numbers_);
  choose_precision(digit);
  numbers_ = reserve_numbers();
  wire_variables();
}

std::string PoolTest::printed() {
  flush(*console);
  return std::exchange(channels[0], "");
}

std::string PoolTest::explained() {
  flush(*explanations);
  return std::exchange(channels[1], "");
}

void PoolTest::evaluate(const std::string& rows) {
  for (const Row& row : table(rows)) {
    SCOPED_TRACE(row[0]);
    std::string expected = row[1];
    if (expected.starts_with('=')) {
      calc(row[1].c_str() + 1, &Cn, 1);
      expected = value(Cn);
    }
    const std::vector<char> text(row[0].c_str(), row[0].c_str() + row[0].size() + 1);
    const int consumed = calc(text.data(), &Cn, 1);
    EXPECT_EQ(value(Cn), expected);
    EXPECT_EQ(printed(), row[2] == "err" ? "err " : row[2]);
    EXPECT_EQ(consumed, row[3].empty() ? static_cast<int>(text.size()) : row.number(3));
  }
}

}  // namespace tivelo::tests
