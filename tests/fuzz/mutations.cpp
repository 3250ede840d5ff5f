// Drives a fuzz target without libFuzzer: so many mutations of good files, the same ones every time.
//   PROGRAM [COUNT]
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

using std::string_literals::operator""s;

// The first byte is the target's own.
const std::string kSeeds[] = {
    "\0C22,93000\n\"a,\"\"b\",4294967295\n,0\n"s,
    "\x01"
    "1,1,abcdefghijkl\n2,0,\n255,255,\"\r\n\"\r\n",
    "\x02-2147483648,-32768,-128,x\n2147483647,32767,127,\"\"\n",
    "\x03\n\n\"\"\n",
    "\x80"
    "1.0.0\nCH_NO,CENT_FREQ\nC22,93000\n",
    "\x81"
    "1.0.0\r\nNO,ENBFLG,FILE_NAME\r\n1,1,A\r\n",
};

// What a CSV file is made of, and what it must not be made of.
const std::string kPieces[] = {
    ",",
    "\"",
    "\"\"",
    "\n",
    "\r\n",
    "\r",
    "\0"s,
    "-",
    "0",
    "4294967296",
    "99999999999999999999",
    "\t",
    "\xFF\xFE"s,
    " ",
    "A",
    ",,",
    "1.0.0",
    "\"\n\"",
    std::string(300, '1'),
};

void mutate(std::string& text, std::mt19937& random)
{
    const size_t at = 1 + random() % text.size();
    const size_t some = random() % 8;
    switch (random() % 6) {
    case 0:
        text.insert(at, kPieces[random() % std::size(kPieces)]);
        break;
    case 1:
        if (at < text.size())
            text[at] = static_cast<char>(random());
        break;
    case 2:
        if (at < text.size())
            text.erase(at, some);
        break;
    case 3:
        text.resize(at);
        break;
    case 4:
        text.insert(at, text.substr(random() % text.size(), some));
        break;
    default:
        text[0] = static_cast<char>(random());
        break;
    }
}

} // namespace

int main(int argc, char** argv)
{
    const long count = argc > 1 ? strtol(argv[1], nullptr, 10) : 100000;
    std::mt19937 random(63); // the same ones every time
    for (long i = 0; i < count; ++i) {
        std::string text = kSeeds[random() % std::size(kSeeds)];
        for (auto mutations = random() % 6; mutations != 0; --mutations)
            mutate(text, random);
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(text.data()), text.size());
    }
    printf("%ld inputs\n", count);
    return 0;
}
