#include "platform/intuition/Language.h"

#include <array>
#include <string_view>

namespace intuition {

namespace {

struct ToolkitText {
    std::string_view English; // as the toolkit asks for it
    const char* Greek;
};

// What its dialogs for files and the menus of its fields and scroll bars say.
constexpr std::array Texts = {
    // Buttons
    ToolkitText{"OK", "Εντάξει"},
    ToolkitText{"&OK", "&Εντάξει"},
    ToolkitText{"Cancel", "Άκυρο"},
    ToolkitText{"&Cancel", "Ά&κυρο"},
    ToolkitText{"&Yes", "&Ναι"},
    ToolkitText{"&No", "Ό&χι"},
    ToolkitText{"Open", "Άνοιγμα"},
    ToolkitText{"&Open", "Ά&νοιγμα"},
    ToolkitText{"Save", "Αποθήκευση"},
    ToolkitText{"&Save", "Αποθή&κευση"},
    ToolkitText{"&Choose", "&Επιλογή"},
    ToolkitText{"Close", "Κλείσιμο"},
    // Choice of a file or drawer
    ToolkitText{"Find Directory", "Εύρεση συρταριού"},
    ToolkitText{"Save As", "Αποθήκευση ως"},
    ToolkitText{"Look in:", "Αναζήτηση σε:"},
    ToolkitText{"Directory:", "Συρτάρι:"},
    ToolkitText{"File &name:", "Ό&νομα αρχείου:"},
    ToolkitText{"Files of type:", "Αρχεία τύπου:"},
    ToolkitText{"All Files", "Όλα τα αρχεία"},
    ToolkitText{"All Files (*)", "Όλα τα αρχεία (*)"},
    ToolkitText{"All files (*)", "Όλα τα αρχεία (*)"},
    ToolkitText{"Directories", "Συρτάρια"},
    ToolkitText{"Files", "Αρχεία"},
    ToolkitText{"Sidebar", "Πλευρική στήλη"},
    ToolkitText{"List of places and bookmarks", "Θέσεις και σελιδοδείκτες"},
    ToolkitText{"Recent Places", "Πρόσφατες θέσεις"},
    ToolkitText{"Computer", "Υπολογιστής"},
    ToolkitText{"My Computer", "Υπολογιστής"},
    ToolkitText{"Back", "Πίσω"},
    ToolkitText{"Go back", "Προηγούμενη θέση"},
    ToolkitText{"Forward", "Εμπρός"},
    ToolkitText{"Go forward", "Επόμενη θέση"},
    ToolkitText{"Parent Directory", "Γονικό συρτάρι"},
    ToolkitText{"Go to the parent directory", "Μετάβαση στο γονικό συρτάρι"},
    ToolkitText{"Create New Folder", "Νέο συρτάρι"},
    ToolkitText{"Create a New Folder", "Δημιουργία νέου συρταριού"},
    ToolkitText{"New Folder", "Νέο συρτάρι"},
    ToolkitText{"&New Folder", "&Νέο συρτάρι"},
    ToolkitText{"List View", "Λίστα"},
    ToolkitText{"Change to list view mode", "Προβολή ως λίστα"},
    ToolkitText{"Detail View", "Λεπτομέρειες"},
    ToolkitText{"Change to detail view mode", "Προβολή με λεπτομέρειες"},
    ToolkitText{"Show &hidden files", "Εμφάνιση &κρυφών αρχείων"},
    ToolkitText{"Show ", "Εμφάνιση "},
    ToolkitText{"&Rename", "&Μετονομασία"},
    ToolkitText{"&Delete", "&Διαγραφή"},
    ToolkitText{"Delete", "Διαγραφή"},
    ToolkitText{"Remove", "Αφαίρεση"},
    ToolkitText{"Name", "Όνομα"},
    ToolkitText{"Size", "Μέγεθος"},
    ToolkitText{"Type", "Τύπος"},
    ToolkitText{"Date Modified", "Ημερομηνία"},
    ToolkitText{"Drive", "Συσκευή"},
    ToolkitText{"File", "Αρχείο"},
    ToolkitText{"Folder", "Συρτάρι"},
    ToolkitText{"%1\nDirectory not found.\nPlease verify the correct directory name was given.",
                "%1\nΤο συρτάρι δεν βρέθηκε.\nΕλέγξτε το όνομα που δόθηκε."},
    ToolkitText{"%1\nFile not found.\nPlease verify the correct file name was given.",
                "%1\nΤο αρχείο δεν βρέθηκε.\nΕλέγξτε το όνομα που δόθηκε."},
    ToolkitText{"%1 already exists.\nDo you want to replace it?", "%1 υπάρχει ήδη.\nΝα αντικατασταθεί;"},
    ToolkitText{"'%1' is write protected.\nDo you want to delete it anyway?",
                "Το '%1' προστατεύεται από εγγραφή.\nΝα διαγραφεί παρ' όλα αυτά;"},
    ToolkitText{"Are you sure you want to delete '%1'?", "Θέλετε σίγουρα να διαγραφεί το '%1';"},
    ToolkitText{"Could not delete directory.", "Το συρτάρι δεν διαγράφηκε."},
    // Menus of fields
    ToolkitText{"&Undo", "&Αναίρεση"},
    ToolkitText{"&Redo", "Ακύ&ρωση αναίρεσης"},
    ToolkitText{"Cu&t", "Απο&κοπή"},
    ToolkitText{"&Copy", "Α&ντιγραφή"},
    ToolkitText{"Copy &Link Location", "Αντιγραφή διεύθυνσης &συνδέσμου"},
    ToolkitText{"&Paste", "&Επικόλληση"},
    ToolkitText{"Select All", "Επιλογή όλων"},
    ToolkitText{"&Select All", "Επιλογή ό&λων"},
    ToolkitText{"&Step up", "Ένα βήμα &πάνω"},
    ToolkitText{"Step &down", "Ένα βήμα &κάτω"},
    ToolkitText{"Insert Unicode control character", "Εισαγωγή χαρακτήρα ελέγχου Unicode"},
    // Menus of scroll bars
    ToolkitText{"Scroll here", "Κύλιση εδώ"},
    ToolkitText{"Top", "Αρχή"},
    ToolkitText{"Bottom", "Τέλος"},
    ToolkitText{"Left edge", "Αριστερό άκρο"},
    ToolkitText{"Right edge", "Δεξί άκρο"},
    ToolkitText{"Page up", "Σελίδα πάνω"},
    ToolkitText{"Page down", "Σελίδα κάτω"},
    ToolkitText{"Page left", "Σελίδα αριστερά"},
    ToolkitText{"Page right", "Σελίδα δεξιά"},
    ToolkitText{"Scroll up", "Κύλιση πάνω"},
    ToolkitText{"Scroll down", "Κύλιση κάτω"},
    ToolkitText{"Scroll left", "Κύλιση αριστερά"},
    ToolkitText{"Scroll right", "Κύλιση δεξιά"},
};

// A text means the same wherever it stands.
class GreekTranslator final : public QTranslator {
public:
    [[nodiscard]] QString translate(const char* /*context*/, const char* english,
                                    const char* /*disambiguation*/, int /*number*/) const override {
        for (const ToolkitText& text : Texts)
            if (text.English == english)
                return QString::fromUtf8(text.Greek);
        return {};
    }
    [[nodiscard]] bool isEmpty() const override { return false; }
};

} // namespace

std::unique_ptr<QTranslator> GreekTexts() {
    return std::make_unique<GreekTranslator>();
}

} // namespace intuition
