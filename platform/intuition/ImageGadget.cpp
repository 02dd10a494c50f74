#include "platform/intuition/ImageGadget.h"

#include "platform/intuition/Native.h"

#include <QPainter>

namespace intuition {

namespace {

class PictureBox : public QWidget {
public:
    void Show(ImageId image) {
        ReleaseImage(std::exchange(Image, image));
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const QPixmap picture = PixmapOf(Image);
        if (picture.isNull())
            return;
        QSize size = picture.deviceIndependentSize().toSize();
        if (size.width() > width() || size.height() > height())
            size.scale(this->size(), Qt::KeepAspectRatio);
        QPainter painter(this);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(QRect(QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size),
                           picture);
    }

private:
    ImageId Image = ImageId::None;
};

} // namespace

ImageGadget::ImageGadget(int width, int height)
    : Gadget(0, std::make_unique<GadgetNative>(std::make_unique<PictureBox>())) {
    SetMinimum(width, height);
}

ImageGadget::~ImageGadget() {
    SetImage(ImageId::None);
}

void ImageGadget::SetImage(ImageId image) {
    WidgetOf<PictureBox>(*this).Show(image);
}

} // namespace intuition
