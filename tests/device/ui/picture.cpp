#include "picture.h"

#include <wincodec.h>

#include <algorithm>
#include <vector>

#include "platform/com_ptr.h"

namespace ui_test {
namespace {

constexpr std::uint32_t kColour = 0x00FFFFFF;

platform::ComPtr<IWICImagingFactory> imagingFactory() {
    platform::ComPtr<IWICImagingFactory> factory;
    CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                     __uuidof(IWICImagingFactory), factory.outVoid());
    return factory;
}

}  // namespace

Picture::Picture() : device_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = kWidth;
    info.bmiHeader.biHeight = -kHeight;  // the top row first
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* pixels = nullptr;
    bitmap_ = CreateDIBSection(device_, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
    pixels_ = static_cast<std::uint32_t*>(pixels);
    previous_ = SelectObject(device_, bitmap_);
}

Picture::~Picture() {
    SelectObject(device_, previous_);
    DeleteObject(bitmap_);
    DeleteDC(device_);
}

std::uint32_t Picture::at(int x, int y) const {
    return pixels_[y * kWidth + x] & kColour;
}

void Picture::fill(std::uint32_t colour) {
    std::fill(pixels_, pixels_ + kWidth * kHeight, colour);
}

void Picture::copyFrom(const Picture& other) {
    std::copy(other.pixels_, other.pixels_ + kWidth * kHeight, pixels_);
}

bool Picture::save(const std::wstring& path, int width) const {
    const auto factory = imagingFactory();
    platform::ComPtr<IWICStream> stream;
    platform::ComPtr<IWICBitmapEncoder> encoder;
    platform::ComPtr<IWICBitmapFrameEncode> frame;
    if (!factory || FAILED(factory->CreateStream(stream.out())) ||
        FAILED(stream->InitializeFromFilename(path.c_str(), GENERIC_WRITE)) ||
        FAILED(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder.out())) ||
        FAILED(encoder->Initialize(stream.get(), WICBitmapEncoderNoCache)) ||
        FAILED(encoder->CreateNewFrame(frame.out(), nullptr)) ||
        FAILED(frame->Initialize(nullptr)) ||
        FAILED(frame->SetSize(static_cast<UINT>(width), kHeight))) {
        return false;
    }
    std::vector<std::uint8_t> rows;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::uint32_t colour = at(x, y);
            for (const int shift : {0, 8, 16}) {
                rows.push_back(static_cast<std::uint8_t>(colour >> shift));
            }
        }
    }
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    return SUCCEEDED(frame->SetPixelFormat(&format)) &&
           IsEqualGUID(format, GUID_WICPixelFormat24bppBGR) &&
           SUCCEEDED(frame->WritePixels(kHeight, static_cast<UINT>(width) * 3,
                                        static_cast<UINT>(rows.size()), rows.data())) &&
           SUCCEEDED(frame->Commit()) && SUCCEEDED(encoder->Commit());
}

bool Picture::load(const std::wstring& path, int width) {
    const auto factory = imagingFactory();
    platform::ComPtr<IWICBitmapDecoder> decoder;
    platform::ComPtr<IWICBitmapFrameDecode> frame;
    platform::ComPtr<IWICFormatConverter> converter;
    UINT wide = 0, high = 0;
    if (!factory ||
        FAILED(factory->CreateDecoderFromFilename(path.c_str(), nullptr, GENERIC_READ,
                                                  WICDecodeMetadataCacheOnDemand, decoder.out())) ||
        FAILED(decoder->GetFrame(0, frame.out())) || FAILED(frame->GetSize(&wide, &high)) ||
        wide != static_cast<UINT>(width) || high != kHeight ||
        FAILED(factory->CreateFormatConverter(converter.out())) ||
        FAILED(converter->Initialize(frame.get(), GUID_WICPixelFormat32bppBGR,
                                     WICBitmapDitherTypeNone, nullptr, 0,
                                     WICBitmapPaletteTypeCustom))) {
        return false;
    }
    return SUCCEEDED(converter->CopyPixels(nullptr, kWidth * 4, kWidth * kHeight * 4,
                                           reinterpret_cast<BYTE*>(pixels_)));
}

int compare(const Picture& a, const Picture& b, int width, Picture& difference,
            std::string& where) {
    int count = 0;
    difference.fill(0);
    HDC red = difference.device();
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < width; ++x) {
            if (a.at(x, y) == b.at(x, y)) {
                continue;
            }
            if (count++ == 0) {
                where = "(" + std::to_string(x) + "," + std::to_string(y) + ")";
            }
            SetPixelV(red, x, y, RGB(255, 0, 0));
        }
    }
    return count;
}

}  // namespace ui_test
