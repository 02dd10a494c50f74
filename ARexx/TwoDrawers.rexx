/* Opens the home and the downloads drawer in two new tabs of the window that runs the script.
   $VER: TwoDrawers.rexx 1.1 (22.11.2026) */

"OPENNEWTAB PATH Home:"
"OPENNEWTAB PATH Downloads:"
exit rc
