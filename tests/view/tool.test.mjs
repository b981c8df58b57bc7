import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { existsSync, rmSync, writeFileSync } from 'node:fs';
import { basename } from 'node:path';
import { afterEach, describe, it } from 'node:test';
import { fileURLToPath } from 'node:url';
import { heading, opened, rows, workFile } from './browser.mjs';

// The page as the tool writes it, of real stores.

const kTool = process.env.LVP_VIEW_TOOL;
const kExamples = fileURLToPath(new URL('../../examples/data/', import.meta.url));

/** The page of a document that was read into a store. */
function pageOf(document, { importing = [], viewing = [] } = {}) {
    const store = workFile(basename(document) + '.lvp');
    for (const file of [store, store + '-lock']) if (existsSync(file)) rmSync(file);
    execFileSync(kTool, ['import', document, store, ...importing], { stdio: 'ignore' });
    const file = workFile(basename(document) + '.html');
    execFileSync(kTool, ['view', store, '-o', file, ...viewing]);
    return file;
}

let page;
let complaints;
afterEach(() => assert.deepEqual(complaints, []));

describe('the page of the materials', () => {
    const schemas = ['--schemas', kExamples + 'schemas.xml'];
    let file;
    const open = async (address) => {
        file ??= pageOf(kExamples + 'materials.xml', { importing: schemas, viewing: schemas });
        ({ page, complaints } = await opened(file, { address }));
    };

    it('shows them with their values and units', async () => {
        await open('#Carbon.Graphite');
        assert.equal(await page.locator('#title').textContent(), 'materials');
        assert.equal(await heading(page), 'Graphite');
        const line = await page.locator('#panel tr', { hasText: 'Density' }).innerText();
        assert.equal(line, 'Density\t1750\tKilogramPerCubicMeter\tdouble');
        assert.match(await page.locator('.chips').textContent(), /conforms to Mechanical;Thermal/);
    });

    it('has their names in both languages', async () => {
        await open();
        await page.selectOption('#language', 'de-de');
        assert.equal((await rows(page))[0], 'Werkstoffe');
        await page.selectOption('#language', 'en-us');
        assert.equal((await rows(page))[0], 'Engineering materials');
    });

    it('has the defaults that a schema gave', async () => {
        await open('#Carbon.Graphite.Density');
        assert.ok(!(await rows(page)).includes('YieldStrength'));
        await page.check('#hidden');
        assert.ok((await rows(page)).includes('YieldStrength'));
    });

    it('compares the materials of a group', async () => {
        await open('#Gas');
        assert.match(await page.locator('#panel').textContent(), /Side by side/);
        assert.ok(await page.locator('#panel th[scope="row"]').count() >= 3);
    });

    it('finds all of them', async () => {
        await open();
        await page.fill('#search', 'MolarMass');
        await page.waitForFunction(() => document.getElementById('status').textContent.endsWith('found'));
        assert.ok(await page.locator('#results .line').count() > 2);
    });

    it('tells that they conform and that nothing is wrong', async () => {
        await open();
        await page.click('#tab-schemas');
        assert.match(await page.locator('#panel').textContent(),
            /Of (\d+) items that inherit, \1 were looked at: all conform\./);
        await page.click('#tab-findings');
        assert.match(await page.locator('#panel').textContent(),
            /The store is in order\.note\d+ records of [\d,]+ bytes, which nothing reaches/);
    });
});

describe('the page of a robot', () => {
    it('shows structs field by field', async () => {
        const schemas = ['--schemas', kExamples + 'motion-schemas.xml'];
        const file = pageOf(kExamples + 'motion.xml', { importing: schemas, viewing: schemas });
        ({ page, complaints } = await opened(file, { address: '#arm.path' }));
        assert.deepEqual(await page.locator('#panel th').allTextContents(), ['#', 'position', 'rotation', 'time']);
        assert.deepEqual(await page.locator('#panel tbody tr:nth-child(2) td').allTextContents(),
            ['1', '0.25, 0, 0.5', '0, 0, 0.7071068, 0.7071068', '400']);
    });
});

describe('the page of a store of hostile texts', () => {
    it('shows them as they are', async () => {
        const texts = ['</script><script>alert(1)</script>', '<!--<script>', '<img src=x onerror=alert(1)>', '\u202eexe'];
        const escaped = texts.map((text) => text.replace(/[<>&"]/g, (one) => `&#${one.charCodeAt(0)};`));
        const items = escaped.map((text) => `<group name="${text}"><name locale="${text}">${text}</name>` +
            `<string name="${text}">${text}</string></group><link name="l${text}" to="${text}"/>`);
        const document = workFile('hostile.xml');
        writeFileSync(document, `<root name="${escaped[0]}">${items.join('')}</root>`);
        ({ page, complaints } = await opened(pageOf(document)));
        await page.click('#expand');
        const shownTexts = [...texts.slice(0, 3), '\\u202eexe'];
        assert.deepEqual(await rows(page), [texts[0], ...shownTexts.flatMap((text) => [text, text, 'l' + text])]);
        assert.deepEqual(await page.locator('#tree .string').allTextContents(), shownTexts);
        assert.equal(await page.locator('script').count(), 2);
        assert.equal(await page.locator('img').count(), 0);
    });
});
