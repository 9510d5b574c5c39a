// A small program built against the installed zuno library: it reads a JSON order, formats
// a line from it, takes apart the URI of its attachment and fills a mail object with it,
// without sending it. It prints what it did; the install test compares that output.
#include <zuno/CException.h>
#include <zuno/CJsonParser.h>
#include <zuno/CJsonPrinter.h>
#include <zuno/CMail.h>
#include <zuno/CStringFormat.h>
#include <zuno/CURI.h>
#include <zuno/CVariantArray.h>
#include <zuno/CVariantMap.h>
#include <zuno/IMailFactory.h>

#include <iostream>

using namespace zuno;

namespace {

void run() {
    const String json =
        "{\"customer\": \"Ada Lovelace\", \"address\": \"ada@example.org\", \"items\": [3, 4.5],"
        " \"invoice\": \"file:///tmp/invoice%20no%207.pdf\"}";
    const P<IVariant> order = CJsonParser::parse(json);
    const CVariantMap& fields = order->asMap();
    std::cout << CJsonPrinter(true).print(*order).toStdString() << '\n';

    const CVariantArray& items = fields.get("items")->asArray();
    const String line = CStringFormat(L"%s ordered %d items, the last for %.2f")
                            .doString(fields.get("customer")->getString())
                            .doInt(items.getCount())
                            .doDouble(items.getAt(items.getCount() - 1)->getDouble())
                            .getResult();
    std::cout << line.toStdString() << '\n';

    const P<IURI> invoice = make<CURI>(fields.get("invoice")->getString());
    std::cout << "scheme " << invoice->getScheme().toStdString() << ", file " << invoice->getFileName().toStdString()
              << ", path " << invoice->getDecodedPath().toStdString() << '\n';

    // Filled, not sent: send() would open the user's mail client.
    const P<IMail> mail = getMailFactory()->createMail();
    mail->setSubject(CStringFormat(L"Invoice for %s").doString(fields.get("customer")->getString()).getResult());
    mail->setNote(line);
    mail->addToRecipient(fields.get("address")->getString());
    mail->addAttachment(invoice);
    const P<CMail> filled = cast<CMail>(mail);
    std::cout << "mail to " << filled->getToRecipients().at(0) << ": " << filled->getSubject().toStdString() << ", "
              << filled->getAttachments().size() << " attachment\n";
}

} // namespace

int main() {
    // The framework reports errors (a JSON syntax error, a malformed URI) as exceptions.
    try {
        run();
        return 0;
    } catch (const CException& error) {
        std::cerr << error.getMessage().toStdString() << '\n';
        return 1;
    }
}
