/* Opens the home and the downloads drawer in two new tabs of the window that runs the script.
   $VER: TwoDrawers.rexx 1.0 (21.11.2026) */
options results

"OPENNEWTAB PATH Home:"
if rc > 0 then do
    say "The home drawer could not be opened."
    exit rc
end
"OPENNEWTAB PATH Downloads:"
exit rc
