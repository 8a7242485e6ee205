#include "png_file.h"

#include "host_error.h"
#include "wide_text.h"

#include <windows.h>

#include <wincodec.h>

namespace zrhost {

namespace {

/// Owns one reference to a COM object.
template<typename Interface>
class ComPointer
{
public:
    ComPointer() = default;
    ~ComPointer()
    {
        if (m_object)
            m_object->Release();
    }
    ComPointer(const ComPointer&) = delete;
    ComPointer& operator=(const ComPointer&) = delete;

    Interface* operator->() const { return m_object; }
    [[nodiscard]] Interface* get() const { return m_object; }
    /// For a function that hands out an object; nothing must be owned yet.
    [[nodiscard]] Interface** out() { return &m_object; }

private:
    Interface* m_object = nullptr;
};

/// COM on this thread; also where the module's Qt has begun it already.
class ComThread
{
public:
    ComThread()
        : m_begun(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)))
    {
    }
    ~ComThread()
    {
        if (m_begun)
            CoUninitialize();
    }
    ComThread(const ComThread&) = delete;
    ComThread& operator=(const ComThread&) = delete;

private:
    const bool m_begun;
};

void check(HRESULT result, const std::string& file)
{
    if (FAILED(result))
        throw HostError("cannot write '" + file
                        + "': " + windowsErrorText(static_cast<unsigned long>(result)));
}

/// The encoder has no format with the bytes in the image's order.
std::vector<BYTE> toBgr(const RgbImage& image)
{
    std::vector<BYTE> bgr(image.data.size());
    for (std::size_t i = 0; i + 2 < bgr.size(); i += 3) {
        bgr[i] = image.data[i + 2];
        bgr[i + 1] = image.data[i + 1];
        bgr[i + 2] = image.data[i];
    }
    return bgr;
}

} // namespace

void writePng(const RgbImage& image, const std::string& file)
{
    const ComThread com;
    ComPointer<IWICImagingFactory> factory;
    check(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                           IID_IWICImagingFactory, reinterpret_cast<void**>(factory.out())),
          file);
    ComPointer<IWICStream> stream;
    check(factory->CreateStream(stream.out()), file);
    check(stream->InitializeFromFilename(toWide(file).c_str(), GENERIC_WRITE), file);
    ComPointer<IWICBitmapEncoder> encoder;
    check(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder.out()), file);
    check(encoder->Initialize(stream.get(), WICBitmapEncoderNoCache), file);
    ComPointer<IWICBitmapFrameEncode> frame;
    check(encoder->CreateNewFrame(frame.out(), nullptr), file);
    check(frame->Initialize(nullptr), file);
    const auto width = static_cast<UINT>(image.width);
    const auto height = static_cast<UINT>(image.height);
    check(frame->SetSize(width, height), file);
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    check(frame->SetPixelFormat(&format), file);
    std::vector<BYTE> bgr = toBgr(image);
    check(frame->WritePixels(height, width * 3, static_cast<UINT>(bgr.size()), bgr.data()), file);
    check(frame->Commit(), file);
    check(encoder->Commit(), file);
}

} // namespace zrhost
