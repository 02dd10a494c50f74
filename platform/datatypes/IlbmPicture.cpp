#include "platform/datatypes/IlbmPicture.h"

#include <algorithm>
#include <array>
#include <vector>

namespace datatypes {

namespace {

constexpr std::uint32_t Opaque = 0xFF000000;
constexpr std::uint32_t HamMode = 0x800, HalfBrightMode = 0x80; // bits of CAMG
constexpr std::uint32_t MostPlanes = 32;
constexpr std::size_t MostColours = 256;
constexpr std::uint32_t ByteRun = 1;
constexpr std::uint64_t MostUnpacked = 64; // bytes that a packed byte stands for at most
constexpr std::uint64_t LeastPart = 16; // a picture of which less than one part in so many is there is none

enum class Masking : std::uint32_t { None = 0, Plane = 1, Colour = 2, Lasso = 3 };
enum class Layout { Rows, Chunky, WholePlanes };
enum class Mode { Palette, HalfBright, Ham, Deep, Grey };

struct Form {
    Layout Order = Layout::Rows;
    Bytes Header, Colours, Data;
    std::optional<std::uint32_t> Display; // CAMG

    [[nodiscard]] std::uint32_t Width() const { return Be16(Header, 0); }
    [[nodiscard]] std::uint32_t Height() const { return Be16(Header, 2); }
    [[nodiscard]] std::uint32_t Planes() const { return U8(Header, 8); }
    [[nodiscard]] Masking Mask() const { return static_cast<Masking>(U8(Header, 9)); }
    [[nodiscard]] std::uint32_t Packing() const { return U8(Header, 10); }
    [[nodiscard]] std::uint32_t TransparentColour() const { return Be16(Header, 12); }
    [[nodiscard]] std::uint32_t AspectX() const { return U8(Header, 14); }
    [[nodiscard]] std::uint32_t AspectY() const { return U8(Header, 15); }
    [[nodiscard]] std::size_t PlaneBytes() const { return (Width() + 15) / 16 * 2; }
    [[nodiscard]] std::uint64_t Pixels() const { return std::uint64_t{Width()} * Height(); }
};

Layout LayoutOf(Bytes file) {
    return HasMark(file, 8, "PBM ")   ? Layout::Chunky
           : HasMark(file, 8, "ACBM") ? Layout::WholePlanes
                                      : Layout::Rows;
}

// The chunks up to the picture's data; sizes that reach past the end of the file are cut. A property that
// stands twice counts as it stood last.
Form ReadForm(Bytes file) {
    Form form;
    form.Order = LayoutOf(file);
    for (std::size_t at = 12; at + 8 <= file.size();) {
        const std::size_t length = std::min<std::size_t>(Be32(file, at + 4), file.size() - at - 8);
        const Bytes data = file.subspan(at + 8, length);
        if (HasMark(file, at, "BMHD"))
            form.Header = data;
        else if (HasMark(file, at, "CMAP"))
            form.Colours = data;
        else if (HasMark(file, at, "CAMG") && data.size() >= 4)
            form.Display = Be32(data, 0);
        else if (HasMark(file, at, "BODY") || HasMark(file, at, "ABIT")) {
            form.Data = data;
            break;
        }
        at += 8 + length + (length & 1);
    }
    return form;
}

// A short file with a large header would take much memory for nothing.
bool HasEnoughData(const Form& form) {
    const std::uint64_t row = form.Order == Layout::Chunky ? form.Width() : form.PlaneBytes() * form.Planes();
    const bool packed = form.Packing() == ByteRun && form.Order != Layout::WholePlanes;
    return form.Data.size() * (packed ? MostUnpacked : 1) >= row * form.Height() / LeastPart;
}

bool CanDecode(const Form& form, std::uint64_t mostPixels) {
    const std::uint64_t pixels = form.Pixels();
    const std::uint32_t planes = form.Planes();
    const bool knownDepth = (planes >= 1 && planes <= 8) || planes == 24 || planes == MostPlanes;
    return form.Header.size() >= 16 && pixels > 0 && pixels <= mostPixels && knownDepth &&
           form.Packing() <= ByteRun && !form.Data.empty() && (form.Order == Layout::Rows || planes <= 8) &&
           HasEnoughData(form);
}

Mode ModeOf(const Form& form) {
    const std::uint32_t planes = form.Planes();
    const std::size_t colours = form.Colours.size() / 3;
    if (planes > 8)
        return Mode::Deep;
    if (colours == 0)
        return Mode::Grey;
    if (form.Order == Layout::Chunky)
        return Mode::Palette;
    if (form.Display && (*form.Display & HamMode) != 0 && planes >= 5)
        return Mode::Ham;
    if (planes != 6)
        return Mode::Palette;
    if (form.Display)
        return (*form.Display & HalfBrightMode) != 0 ? Mode::HalfBright : Mode::Palette;
    // Without a display mode six planes with few colours can be nothing else.
    return colours <= 16 ? Mode::Ham : colours <= 32 ? Mode::HalfBright : Mode::Palette;
}

using Palette = std::array<std::uint32_t, MostColours>;

// Machines with four bits for each component left the lower ones empty: white would be grey.
bool HasFourBits(Bytes colours) {
    return std::ranges::all_of(colours,
                               [](std::byte value) { return (value & std::byte{15}) == std::byte{}; });
}

Palette ReadPalette(const Form& form, Mode mode) {
    Palette palette;
    palette.fill(Opaque);
    if (mode == Mode::Grey) {
        const std::uint32_t last = (1U << form.Planes()) - 1;
        for (std::uint32_t i = 0; i <= last; ++i)
            palette[i] = Opaque | i * 255 / last * 0x010101U;
        return palette;
    }
    const bool widen = HasFourBits(form.Colours);
    const std::size_t count = std::min(form.Colours.size() / 3, MostColours);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t colour = Be32(form.Colours, i * 3) >> 8;
        palette[i] = Opaque | colour | (widen ? colour >> 4 : 0);
    }
    if (mode == Mode::HalfBright)
        for (std::size_t i = 0; i < 32; ++i)
            palette[32 + i] = Opaque | (palette[i] >> 1 & 0x7F7F7F);
    return palette;
}

// The bytes of the data, unpacked. Runs may go on over the ends of planes and rows, as in old files.
class Unpacker {
public:
    Unpacker(Bytes data, bool packed) : Data(data), Left(packed ? 0 : data.size()) {}

    // False when no byte of the row is there; what is missing is 0.
    bool Fill(std::vector<std::uint8_t>& row) {
        std::size_t done = 0;
        while (done < row.size() && (Left > 0 || NextRun())) {
            const std::size_t count = std::min(Left, row.size() - done);
            for (std::size_t i = 0; i < count; ++i)
                row[done + i] = Repeats ? Value : static_cast<std::uint8_t>(U8(Data, At + i));
            At += Repeats ? 0 : count;
            Left -= count;
            done += count;
        }
        std::fill(row.begin() + static_cast<std::ptrdiff_t>(done), row.end(), std::uint8_t{0});
        return done > 0;
    }

private:
    bool NextRun() {
        while (At < Data.size()) {
            const std::uint32_t code = U8(Data, At++);
            if (code == 128)
                continue;
            Repeats = code > 128;
            Left = Repeats ? 257 - code : std::min<std::size_t>(code + 1, Data.size() - At);
            if (Repeats)
                Value = static_cast<std::uint8_t>(U8(Data, At++));
            if (Left > 0)
                return true;
        }
        return false;
    }

    Bytes Data;
    std::size_t At = 0, Left;
    bool Repeats = false;
    std::uint8_t Value = 0;
};

// One row of numbers, a bit of each from every plane, the first plane lowest; and of the mask.
class RowReader {
public:
    explicit RowReader(const Form& form)
        : Source(form),
          Packed(form.Data, form.Packing() == ByteRun && form.Order != Layout::WholePlanes),
          Plane(form.Order == Layout::Chunky ? form.Width() + (form.Width() & 1) : form.PlaneBytes()),
          HasMask(form.Order == Layout::Rows && form.Mask() == Masking::Plane),
          Numbers(form.Width()),
          Shown(form.Width(), true) {}

    // False when nothing of the row is there.
    bool Next() {
        if (Source.Order == Layout::Chunky) {
            const bool any = Packed.Fill(Plane);
            std::copy_n(Plane.begin(), Numbers.size(), Numbers.begin());
            return any;
        }
        std::ranges::fill(Numbers, 0U);
        bool any = false;
        for (std::uint32_t plane = 0; plane < Source.Planes(); ++plane) {
            any = FillPlane(plane) || any;
            AddPlane(plane);
        }
        if (HasMask) {
            (void)Packed.Fill(Plane);
            for (std::size_t x = 0; x < Shown.size(); ++x)
                Shown[x] = (Plane[x / 8] >> (7 - x % 8) & 1) != 0;
        }
        ++Row;
        return any;
    }
    [[nodiscard]] const std::vector<std::uint32_t>& Pixels() const { return Numbers; }
    [[nodiscard]] bool IsShown(std::size_t x) const { return Shown[x]; }

private:
    bool FillPlane(std::uint32_t plane) {
        if (Source.Order == Layout::Rows)
            return Packed.Fill(Plane);
        const std::size_t at =
            std::min((std::size_t{plane} * Source.Height() + Row) * Plane.size(), Source.Data.size());
        return Unpacker(Source.Data.subspan(at), false).Fill(Plane);
    }
    void AddPlane(std::uint32_t plane) {
        for (std::size_t i = 0; i < Plane.size(); ++i) {
            if (Plane[i] == 0)
                continue;
            const std::size_t last = std::min(i * 8 + 8, Numbers.size());
            for (std::size_t x = i * 8; x < last; ++x)
                Numbers[x] |= (Plane[i] >> (7 - x % 8) & 1U) << plane;
        }
    }

    const Form& Source;
    Unpacker Packed;
    std::vector<std::uint8_t> Plane;
    bool HasMask;
    std::vector<std::uint32_t> Numbers;
    std::vector<bool> Shown;
    std::size_t Row = 0;
};

// The two highest bits say what the others are: a palette colour, or a new value for one component of the
// colour to the left.
class HamPen {
public:
    HamPen(const Palette& palette, std::uint32_t planes) : Colours(palette), Bits(planes <= 6 ? 4 : 6) {}

    void StartRow() { Colour = Colours[0]; }
    std::uint32_t Draw(std::uint32_t number) {
        const std::uint32_t low = number & ((1U << Bits) - 1);
        const std::uint32_t value = Bits == 4 ? low * 17 : low << 2 | low >> 4;
        switch (number >> Bits & 3) {
        case 0:
            return Colour = Colours[low];
        case 1:
            return Colour = (Colour & 0xFFFFFF00) | value;
        case 2:
            return Colour = (Colour & 0xFF00FFFF) | value << 16;
        default:
            return Colour = (Colour & 0xFFFF00FF) | value << 8;
        }
    }

private:
    const Palette& Colours;
    unsigned Bits;
    std::uint32_t Colour = Opaque;
};

// Red in the lowest planes, then green, blue, and opacity where there are 32.
std::uint32_t DeepColour(std::uint32_t number, std::uint32_t planes) {
    const std::uint32_t colour = (number & 0xFF) << 16 | (number & 0xFF00) | (number >> 16 & 0xFF);
    return colour | (planes == MostPlanes ? number & Opaque : Opaque);
}

void DecodeRows(const Form& form, icon::IconPicture& picture) {
    const Mode mode = ModeOf(form);
    const Palette palette = ReadPalette(form, mode);
    const bool hasKey = (form.Mask() == Masking::Colour || form.Mask() == Masking::Lasso) &&
                        (mode == Mode::Palette || mode == Mode::HalfBright || mode == Mode::Grey);
    HamPen ham(palette, form.Planes());
    RowReader rows(form);
    for (std::size_t y = 0; y < picture.Height && rows.Next(); ++y) {
        ham.StartRow();
        std::uint32_t* pixel = &picture.Pixels[y * picture.Width];
        for (std::size_t x = 0; x < picture.Width; ++x) {
            const std::uint32_t number = rows.Pixels()[x];
            const std::uint32_t colour = mode == Mode::Ham    ? ham.Draw(number)
                                         : mode == Mode::Deep ? DeepColour(number, form.Planes())
                                                              : palette[number & 0xFF];
            if (rows.IsShown(x) && !(hasKey && number == form.TransparentColour()))
                pixel[x] = colour;
        }
    }
}

icon::IconPicture SquarePixels(icon::IconPicture picture, std::uint32_t across, std::uint32_t down) {
    if (across == 1 && down == 1)
        return picture;
    icon::IconPicture squared{picture.Width * across, picture.Height * down, {}};
    squared.Pixels.resize(picture.Pixels.size() * across * down);
    for (std::size_t y = 0; y < squared.Height; ++y)
        for (std::size_t x = 0; x < squared.Width; ++x)
            squared.Pixels[y * squared.Width + x] = picture.Pixels[y / down * picture.Width + x / across];
    return squared;
}

} // namespace

bool IsIlbm(Bytes file) {
    return HasMark(file, 0, "FORM") &&
           (HasMark(file, 8, "ILBM") || HasMark(file, 8, "PBM ") || HasMark(file, 8, "ACBM"));
}

std::uint64_t IlbmPixels(Bytes file) {
    return IsIlbm(file) ? ReadForm(file).Pixels() : 0;
}

std::optional<icon::IconPicture> ParseIlbm(Bytes file, std::uint64_t mostPixels) {
    if (!IsIlbm(file))
        return std::nullopt;
    const Form form = ReadForm(file);
    if (!CanDecode(form, mostPixels / 2))
        return std::nullopt;
    icon::IconPicture picture{form.Width(), form.Height(), {}};
    picture.Pixels.resize(std::size_t{picture.Width} * picture.Height);
    DecodeRows(form, picture);
    const std::uint32_t x = form.AspectX(), y = form.AspectY();
    const bool known = x != 0 && y != 0;
    return SquarePixels(std::move(picture), known && x >= 2 * y ? 2 : 1, known && y >= 2 * x ? 2 : 1);
}

} // namespace datatypes
